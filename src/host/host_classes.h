// HostClasses: makes the embedded host's classes creatable under the ProgIDs a filter asks for.
//
//   const HostClasses classes;   // one in each thread that opens plots, as long as it does
//
// Test: tests/host/open_plot_test.cpp.
#pragma once

#include <objbase.h>

#include <array>
#include <memory>

namespace qm {

class ObjectWrapper;

// Registers "Tessel.QmContainer", "Tessel.QmLayers" and "Tessel.QmPenTable" for the calling thread
// (a class object belongs to its thread); COM is initialised meanwhile. The ProgIDs themselves are
// the process's and stay until the last HostClasses of any thread is gone.
class HostClasses {
  public:
    // `wrapper` (host_object.h) gets every object that the classes and their nodes make.
    explicit HostClasses(std::shared_ptr<ObjectWrapper> wrapper = nullptr) noexcept;
    ~HostClasses();
    HostClasses(const HostClasses&) = delete;
    HostClasses& operator=(const HostClasses&) = delete;

    // S_OK, or why the registration failed (then opening a plot fails with E_FAIL).
    HRESULT Status() const noexcept { return status_; }

  private:
    HRESULT RegisterAll(const std::shared_ptr<ObjectWrapper>& wrapper);

    static constexpr std::size_t kClassCount = 3;

    bool initialised_;
    std::shared_ptr<void> progIds_;
    std::array<DWORD, kClassCount> cookies_{};
    std::size_t registered_ = 0;
    HRESULT status_;
};

}  // namespace qm
