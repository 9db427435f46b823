// PageResources: the names by which a page's operators use other objects (ISO 32000-1, 7.8.3).
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <unordered_set>

#include "render/pdf/pdf_file.h"

namespace qm::pdf {

class PageResources {
  public:
    enum Kind : std::size_t { kXObject, kPattern, kFont, kProperties };

    // A name may be added again.
    void Add(Kind kind, const std::string& name, ObjectNumber object) {
        static constexpr std::array<char, kKinds> kLetters{'x', 'p', 'f', 'o'};
        if (!known_.insert(kLetters[kind] + name).second) return;
        entries_[kind] += '/' + name + ' ' + Reference(object);
    }
    // Entries of the dictionary; `more` is put behind them.
    std::string Dictionary(std::string_view more) const {
        static constexpr std::array<std::string_view, kKinds> kNames{"/XObject", "/Pattern",
                                                                     "/Font", "/Properties"};
        std::string text = "<<";
        for (std::size_t kind = 0; kind < kKinds; ++kind) {
            if (entries_[kind].empty()) continue;
            text.append(kNames[kind]).append("<<").append(entries_[kind]).append(">>");
        }
        return text.append(more).append(">>");
    }

  private:
    static constexpr std::size_t kKinds = 4;

    std::array<std::string, kKinds> entries_;
    std::unordered_set<std::string> known_;
};

}  // namespace qm::pdf
