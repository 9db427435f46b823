// Connection points and their enumerators.
#include "server/event_source.h"

#include <gtest/gtest.h>
#include <olectl.h>

#include <string>

#include "tests/server/sample_component.h"

namespace {

using qm::ComPtr;

class ConnectionPointTest : public testing::Test {
  protected:
    void SetUp() override {
        component_ = qm::MakeObject<qm::SampleComponent>();
        ASSERT_EQ(component_->FindConnectionPoint(__uuidof(_IQmFilterSaveEvents), point_.Put()),
                  S_OK);
    }
    void TearDown() override {
        point_.Reset();
        component_.Reset();
        EXPECT_EQ(qm::LiveObjectCount(), before_);
    }

    // Connects a sink that writes `letter` into heard_ and then does `more`; gives its cookie.
    DWORD Connect(
        char letter, std::function<bool()> more = [] { return false; }) {
        DWORD cookie = 0;
        EXPECT_EQ(point_->Advise(qm::MakeObject<qm::SampleSink>([=] {
                                     heard_ += letter;
                                     return more();
                                 }).Get(),
                                 &cookie),
                  S_OK);
        return cookie;
    }
    std::string Fire() {
        heard_.clear();
        return component_->CloseDocument() == S_OK ? heard_ : heard_ + " aborted";
    }

    const LONG before_ = qm::LiveObjectCount();
    std::string heard_;
    ComPtr<qm::SampleComponent> component_;
    ComPtr<IConnectionPoint> point_;
};

TEST_F(ConnectionPointTest, AnswersEverySinkInTurn) {
    Connect('a');
    const DWORD b = Connect('b', [] { return true; });
    Connect('c');
    EXPECT_EQ(Fire(), "abc aborted");
    EXPECT_EQ(point_->Unadvise(b), S_OK);
    EXPECT_EQ(point_->Unadvise(b), CONNECT_E_NOCONNECTION);
    EXPECT_NE(Connect('d'), b);
    EXPECT_EQ(Fire(), "acd");
}

TEST_F(ConnectionPointTest, SinksComeAndGoDuringAnEvent) {
    DWORD b = 0, d = 0;
    b = Connect('b', [&] {
        point_->Unadvise(b);  // this sink itself
        point_->Unadvise(d);  // one whose turn is yet to come
        Connect('e');
        return false;
    });
    Connect('c');
    d = Connect('d');
    EXPECT_EQ(Fire(), "bc");
    EXPECT_EQ(Fire(), "ce");
}

TEST_F(ConnectionPointTest, RefusesWhatIsNoSink) {
    DWORD cookie = 7;
    EXPECT_EQ(point_->Advise(component_.As<IUnknown>().Get(), &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(cookie, 0u);
    EXPECT_EQ(point_->Advise(nullptr, &cookie), E_POINTER);
    ComPtr<IConnectionPoint> other;
    EXPECT_EQ(component_->FindConnectionPoint(__uuidof(_IQmFilterEvents), other.Put()),
              CONNECT_E_NOCONNECTION);
    EXPECT_FALSE(other);
}

TEST_F(ConnectionPointTest, EnumeratesConnectionsAsTheyWere) {
    const DWORD a = Connect('a');
    const DWORD b = Connect('b');
    ComPtr<IEnumConnections> all;
    ASSERT_EQ(point_->EnumConnections(all.Put()), S_OK);
    point_->Unadvise(a);

    CONNECTDATA data[3] = {};
    ULONG fetched = 0;
    EXPECT_EQ(all->Next(3, data, nullptr), E_POINTER);
    EXPECT_EQ(all->Next(3, data, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2u);
    EXPECT_EQ(data[0].dwCookie, a);
    EXPECT_EQ(data[1].dwCookie, b);
    for (ULONG i = 0; i < fetched; ++i) {
        EXPECT_TRUE(qm::Query<_IQmFilterSaveEvents>(data[i].pUnk));
        data[i].pUnk->Release();
    }

    EXPECT_EQ(all->Skip(1), S_FALSE);
    EXPECT_EQ(all->Reset(), S_OK);
    EXPECT_EQ(all->Skip(1), S_OK);
    ComPtr<IEnumConnections> copy;
    ASSERT_EQ(all->Clone(copy.Put()), S_OK);
    EXPECT_EQ(copy->Next(1, data, nullptr), S_OK);
    EXPECT_EQ(data[0].dwCookie, b);
    data[0].pUnk->Release();
    EXPECT_EQ(copy->Next(1, data, nullptr), S_FALSE);
}

}  // namespace
