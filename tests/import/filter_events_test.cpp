// Progress events and abort answers.
#include <functional>

#include "tests/import/import_fixture.h"

namespace qm {
namespace {

// Calls a function at each Progress event.
class Listener final : public ComObject<_IQmFilterEvents> {
  public:
    using Action = std::function<void(LONG percent, VARIANT_BOOL& abort)>;
    explicit Listener(Action action) : action_(std::move(action)) {}

    HRESULT STDMETHODCALLTYPE Progress(LONG percent, VARIANT_BOOL* abort) noexcept override {
        action_(last = percent, *abort);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FontPath(BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE XrefPath(BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE XrefPathEx(BSTR, BSTR, BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Password(BSTR, BSTR*) noexcept override { return E_NOTIMPL; }

    LONG last = 0;

  private:
    Action action_;
};

// Four pages of 2500 bytes each.
std::string FourPages() {
    std::string plot;
    for (int page = 0; page < 4; ++page) {
        std::string commands = page == 0 ? PlotOf("PD1,1;") : "PD1,1;";
        commands.resize(2497, ';');
        plot += commands + "PG;";
    }
    return plot;
}

// Detection and lookups report nothing.
TEST_F(ImportTest, ProgressRisesToNinetyNine) {
    LONG told = 0;
    const auto listener =
        MakeObject<Listener>([&](LONG percent, VARIANT_BOOL&) { EXPECT_EQ(percent, ++told); });
    Advise(listener.Get());
    ASSERT_EQ(Open(FourPages()), S_OK);
    EXPECT_EQ(told, 0);
    ASSERT_EQ(GetNode(), S_OK);
    EXPECT_EQ(GetNode(), S_OK);
    EXPECT_EQ(told, 99);
}

// The sinks are asked in turn; one that comes later cannot take an abort back.
TEST_F(ImportTest, AnAbortKeepsThePagesSoFar) {
    const std::pair<LONG, int> rows[] = {{1, 1}, {40, 2}, {60, 3}, {99, 4}};
    for (const auto& row : rows) {
        const LONG at = row.first;  // a lambda takes no structured binding
        const int pages = row.second;
        SCOPED_TRACE(at);
        TearDown();
        SetUp();
        const auto first = MakeObject<Listener>([&](LONG percent, VARIANT_BOOL& abort) {
            if (percent == at) abort = 1;  // any value but VARIANT_FALSE
        });
        const auto second = MakeObject<Listener>([&](LONG percent, VARIANT_BOOL& abort) {
            EXPECT_EQ(abort != VARIANT_FALSE, percent == at) << "comes in with the answer so far";
            abort = VARIANT_FALSE;
        });
        Advise(first.Get());
        Advise(second.Get());
        ASSERT_EQ(Open(FourPages()), S_OK);
        EXPECT_EQ(GetNode(), E_ABORT);
        EXPECT_EQ(node_, "");
        EXPECT_EQ(second->last, at);
        EXPECT_EQ(lines_.back(),
                  "contents PutAttribute \"TotalNodes\" " + std::to_string(pages) + " 2");
        EXPECT_EQ(GetNode(Variant::Text(L"Page 1")), S_OK);
    }
}

TEST_F(ImportTest, ASinkCannotLoadOnceMoreButMayDropTheFilter) {
    const auto listener = MakeObject<Listener>([&](LONG percent, VARIANT_BOOL&) {
        if (percent == 1) {
            EXPECT_EQ(GetNode(), E_FAIL);
            EXPECT_EQ(Open(FourPages()), E_FAIL);
        } else if (percent == 2) {
            filter_.Reset();
        }
    });
    Advise(listener.Get());
    ASSERT_EQ(Open(FourPages()), S_OK);
    IQmFilter* filter = filter_.Get();
    EXPECT_EQ(filter->GetNode(Variant().Get(), 0, nullptr), S_OK);
    EXPECT_TRUE(Wrote("contents PutAttribute \"TotalNodes\" 4 2"));
}

}  // namespace
}  // namespace qm
