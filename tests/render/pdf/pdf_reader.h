// A reader of PDF files for tests, strict where a viewer forgives: every entry of the
// cross-reference stream must lead to its object, every length must be right, every stream inflate.
#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/display_list.h"
#include "render/page_writers.h"
#include "tests/render/memory_sink.h"

namespace qm {

class PdfReader {
  public:
    struct Object {
        std::string value;   // of a stream: its dictionary
        std::string stream;  // inflated
    };

    // Findings fail the test.
    explicit PdfReader(std::string text) : text_(std::move(text)) {
        EXPECT_EQ(text_.rfind("%PDF-1.6\n", 0), 0U);
        EXPECT_EQ(text_.substr(text_.size() - 6), "%%EOF\n");
        const Object table = StreamAt(Number(text_, text_.rfind("startxref\n") + 10));
        trailer = table.value;
        const std::size_t size = Number(table.value, table.value.find("/Size ") + 6);
        EXPECT_EQ(table.stream.size(), 7 * size);
        // Lengths lie in object streams: they are read first.
        for (const char kind : {'\2', '\1'}) {
            for (std::size_t i = 1; i < size; ++i) {
                if (table.stream[7 * i] == kind) ReadEntry(i, &table.stream[7 * i]);
            }
        }
        EXPECT_EQ(objects.size(), size - 1);
    }

    // The first object whose dictionary holds `text`; an empty one when none does.
    const Object& Find(std::string_view text) const {
        static const Object kNone;
        for (const auto& [number, object] : objects) {
            if (object.value.find(text) != std::string::npos) return object;
        }
        return kNone;
    }
    std::ptrdiff_t Count(std::string_view text) const {
        return std::count_if(objects.begin(), objects.end(), [&](const auto& entry) {
            return entry.second.value.find(text) != std::string::npos;
        });
    }
    // The list behind `key` of the index-th page.
    std::string OfPage(std::size_t index, const std::string& key) const {
        for (const auto& [number, object] : objects) {
            if (object.value.find("/Type/Page/") == std::string::npos || index-- != 0) continue;
            const std::size_t at = object.value.find(key + '[') + key.size() + 1;
            return object.value.substr(at, object.value.find(']', at) - at);
        }
        return {};
    }
    std::string WholeContent(std::size_t page = 0) const {
        std::string content;
        const std::string pieces = OfPage(page, "/Contents");
        for (std::size_t at = 0; at < pieces.size(); at = pieces.find('R', at) + 2) {
            content += objects.at(Number(pieces, at)).stream;
            if (pieces.find('R', at) + 2 > pieces.size()) break;
        }
        return content;
    }
    // The operators of a page behind those that place its drawing.
    std::string Content(std::size_t page = 0) const {
        const std::string all = WholeContent(page);
        return all.substr(all.find(" Tr\n") + 4);
    }

    std::map<std::size_t, Object> objects;
    std::string trailer;

  private:
    static std::size_t Number(const std::string& text, std::size_t at) {
        return std::strtoull(text.c_str() + at, nullptr, 10);
    }
    static std::string Inflate(std::string_view bytes) {
        z_stream stream{};
        EXPECT_EQ(inflateInit(&stream), Z_OK);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
        stream.avail_in = static_cast<uInt>(bytes.size());
        std::string result;
        int status = Z_OK;
        while (status == Z_OK) {
            char out[4096];
            stream.next_out = reinterpret_cast<Bytef*>(out);
            stream.avail_out = sizeof out;
            status = inflate(&stream, Z_NO_FLUSH);
            result.append(out, sizeof out - stream.avail_out);
        }
        EXPECT_EQ(status, Z_STREAM_END);
        EXPECT_EQ(stream.avail_in, 0U);
        inflateEnd(&stream);
        return result;
    }
    // "12 0 obj\n<<...>>\nstream\n" at `offset`.
    Object StreamAt(std::size_t offset) {
        Object object;
        const std::size_t dictionary = text_.find(" 0 obj\n", offset) + 7;
        const std::size_t begin = text_.find("\nstream\n", dictionary);
        object.value = text_.substr(dictionary, begin - dictionary);
        const std::size_t key = object.value.find("/Length ") + 8;
        std::size_t length = Number(object.value, key);
        if (object.value.find(" 0 R>>", key) == object.value.size() - 6) {
            length = Number(objects[length].value, 0);
        }
        EXPECT_EQ(text_.substr(begin + 8 + length, 18), "\nendstream\nendobj\n");
        object.stream = Inflate(std::string_view(text_).substr(begin + 8, length));
        return object;
    }
    void ReadEntry(std::size_t number, const char* entry) {
        std::size_t place = 0;
        for (int i = 1; i < 6; ++i) place = place << 8 | static_cast<unsigned char>(entry[i]);
        if (entry[0] == 2) {
            objects[number].value = Contained(number, place, static_cast<unsigned char>(entry[6]));
        } else {
            EXPECT_EQ(Number(text_, place), number);
            objects[number] = StreamAt(place);
        }
    }
    std::string Contained(std::size_t number, std::size_t container, std::size_t index) {
        const std::string head = '\n' + std::to_string(container) + " 0 obj\n<</Type/ObjStm";
        const std::size_t at = text_.find(head);
        EXPECT_NE(at, std::string::npos) << container;
        const Object holder = StreamAt(at + 1);
        const std::size_t first = Number(holder.value, holder.value.find("/First ") + 7);
        const char* pair = holder.stream.c_str();
        std::size_t offset = 0;
        for (std::size_t i = 0; i <= index; ++i) {
            char* end = nullptr;
            const std::size_t named = std::strtoull(pair, &end, 10);
            EXPECT_TRUE(i < index || named == number);
            offset = std::strtoull(end, &end, 10);
            pair = end;
        }
        const std::size_t begin = first + offset;
        return holder.stream.substr(begin, holder.stream.find('\n', begin) - begin);
    }

    std::string text_;
};

inline PageSource SourceOf(const DisplayList& list) {
    PageSource page;
    page.drawing = &list;
    page.name = "Page 1";
    return page;
}

inline std::string PdfText(const std::vector<PageSource>& pages) {
    PageOptions options;
    options.marginMillimetres = 0.0;
    MemorySink sink;
    WritePdf(pages, options, sink);
    return sink.text;
}
inline PdfReader Pdf(const std::vector<PageSource>& pages) { return PdfReader(PdfText(pages)); }
inline PdfReader Pdf(const DisplayList& list) { return Pdf({SourceOf(list)}); }

}  // namespace qm
