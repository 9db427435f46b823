// ImportTest: the import filter in front of a tracing host that can be told to refuse a call.
#pragma once

#include <gtest/gtest.h>
#include <qmfilter.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/source_and_events.h"
#include "import/qm_filter_hpgl.h"
#include "platform/variant.h"
#include "trace/host_trace.h"

namespace qm {

inline ComPtr<IStream> MemoryStream(std::string_view bytes) {
    ComPtr<IStream> stream;
    CreateStreamOnHGlobal(nullptr, TRUE, stream.Put());
    stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    return stream;
}

// Long enough for detection, without a mark on the paper.
inline std::string PlotOf(std::string_view commands) {
    return "IN;SP1;PU;PU;PU;PU;PU;PU;" + std::string(commands);
}

class ImportTest : public testing::Test {
  protected:
    void SetUp() override {
        before_ = LiveObjectCount();
        host_ = std::make_unique<TraceHost>([this](std::string_view line) {
            lines_.emplace_back(line);
            const auto found = refused_.find(lines_.back());
            return found == refused_.end() ? S_OK : found->second;
        });
        ASSERT_EQ(CreateQmFilterHPGL(nullptr, __uuidof(IQmFilter), filter_.PutVoid()), S_OK);
    }
    void TearDown() override {
        filter_.Reset();
        host_.reset();
        EXPECT_EQ(LiveObjectCount(), before_) << "objects leaked";
    }

    HRESULT Open(std::string_view file, std::wstring_view storageName = L"") {
        const auto data = MakeObject<DataObject>(MemoryStream(file), std::wstring(storageName));
        return filter_->OpenDocument(data.Get(), host_->MakeDocument().Get(), 0);
    }
    // Name of the node that came back in `node_`.
    HRESULT GetNode(const Variant& page = Variant()) {
        ComPtr<IUnknown> node;
        const HRESULT status = filter_->GetNode(page.Get(), 0, node.Put());
        node_ = node ? std::string(host_->Log().NameOf(node.Get())) : "";
        return status;
    }
    DWORD Advise(IUnknown* sink) {
        DWORD cookie = 0;
        EXPECT_EQ(Point()->Advise(sink, &cookie), S_OK);
        return cookie;
    }
    ComPtr<IConnectionPoint> Point() {
        ComPtr<IConnectionPoint> point;
        filter_.As<IConnectionPointContainer>()->FindConnectionPoint(__uuidof(_IQmFilterEvents),
                                                                     point.Put());
        return point;
    }
    bool Wrote(const std::string& line) const {
        return std::find(lines_.begin(), lines_.end(), line) != lines_.end();
    }

    std::vector<std::string> lines_;
    std::map<std::string, HRESULT> refused_;  // answers to lines, instead of S_OK
    std::unique_ptr<TraceHost> host_;
    ComPtr<IQmFilter> filter_;
    std::string node_;

  private:
    LONG before_ = 0;
};

}  // namespace qm
