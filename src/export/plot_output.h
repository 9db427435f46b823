// PlotOutput: the stream of one export, shared by its structures and sinks.
//
// Each text is one IStream::Write of its exact length. The count of written bytes is not asked for:
// a stream that cannot take everything says so with its status. S_FALSE and other successes that
// are not S_OK mean a short write and count as STG_E_MEDIUMFULL. The first failure ends the method
// that met it and goes back to the host; nothing is retried. Test:
// tests/export/failing_stream_test.cpp.
#pragma once

#include <objbase.h>

#include <cstdint>
#include <string_view>
#include <utility>

#include "export/plot_format.h"
#include "platform/com_ptr.h"

namespace qm {

class PlotOutput {
  public:
    PlotOutput() = default;
    // A null stream makes every write fail with E_FAIL.
    explicit PlotOutput(ComPtr<IStream> stream) : stream_(std::move(stream)) {}

    // The status of the stream; E_INVALIDARG for more than a Write can take (4 GiB).
    HRESULT Write(std::string_view bytes) const noexcept {
        if (!stream_) return E_FAIL;
        if (bytes.size() > UINT32_MAX) return E_INVALIDARG;
        const HRESULT status =
            stream_->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
        return status > S_OK ? STG_E_MEDIUMFULL : status;
    }

    template <typename... Values, typename... Arguments>
    HRESULT Write(const Command<Values...>& command, Arguments... values) const noexcept {
        static_assert(sizeof...(Values) == sizeof...(Arguments));
        return Write(CommandText<Values...>(command, values...).View());
    }

  private:
    ComPtr<IStream> stream_;
};

// Several texts of one method: after the first failure the rest is not written, and its status is
// the result.
class TextSequence {
  public:
    explicit TextSequence(const PlotOutput& output) : output_(output) {}

    template <typename... Arguments>
    TextSequence& Add(const Arguments&... text) noexcept {
        if (Going()) status_ = output_.Write(text...);
        return *this;
    }
    bool Going() const noexcept { return status_ == S_OK; }
    HRESULT Status() const noexcept { return status_; }

  private:
    const PlotOutput& output_;
    HRESULT status_ = S_OK;
};

}  // namespace qm
