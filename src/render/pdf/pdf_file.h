// PdfFile: the objects of a PDF file (ISO 32000-1, 7.5), written front to back: header, streams as
// they come, small objects gathered in object streams, cross-reference stream.
//
//   PdfFile file(sink);
//   const ObjectNumber page = file.NewObject();
//   const ObjectNumber content = file.WriteStream("", "0 0 m 9 9 l S");
//   file.WriteObject(page, "<</Type/Page/Contents " + Reference(content) + ">>");
//   file.Finish(catalogue, info);
//
// By hand because a library for it would keep every object in memory until the end; here an object
// leaves 16 bytes behind. Test: tests/render/pdf/pdf_file_test.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "render/deflater.h"
#include "render/output_sink.h"

namespace qm::pdf {

using ObjectNumber = std::uint32_t;  // from 1

// "12 0 R".
std::string Reference(ObjectNumber number);

class PdfFile {
  public:
    // Writes the header. The sink must outlive the file; what it throws passes through.
    explicit PdfFile(OutputSink& sink);

    // A number to refer to, whose object may come at any time.
    ObjectNumber NewObject();
    // Any object that is not a stream.
    void WriteObject(ObjectNumber number, std::string_view value);
    ObjectNumber WriteObject(std::string_view value);

    // A stream in one go. `entries` of its dictionary stand for themselves, without << and >>;
    // /Filter and /Length are added.
    void WriteStream(ObjectNumber number, std::string_view entries, std::string_view content);
    ObjectNumber WriteStream(std::string_view entries, std::string_view content);
    // A stream of any length piece by piece; no other object may be written in between.
    void BeginStream(ObjectNumber number, std::string_view entries);
    void Append(std::string_view content);
    void EndStream();

    // The cross-reference stream. Every object must have been written.
    void Finish(ObjectNumber catalogue, ObjectNumber info);

  private:
    // Where an object lies: at a place in the file or, with a container, as its n-th object.
    struct Place {
        std::uint64_t offset = 0;
        ObjectNumber container = 0;
    };
    // Compressed bytes, held back while they are few: the length then stands in front of them.
    class StreamSink final : public OutputSink {
      public:
        explicit StreamSink(PdfFile& file) : file_(file) {}
        void Write(std::string_view bytes) override;

      private:
        PdfFile& file_;
    };

    void Put(std::string_view bytes);
    void PutStreamHead(std::string_view length);
    void FlushObjects();

    OutputSink& sink_;
    std::uint64_t offset_ = 0;
    std::vector<Place> places_;  // by object number - 1
    std::unique_ptr<Deflater> deflater_ = MakeFastDeflater(1);
    // The object stream at hand.
    ObjectNumber container_ = 0;
    std::string index_;  // number and offset of each object
    std::string objects_;
    std::size_t objectCount_ = 0;
    // The stream at hand.
    StreamSink streamSink_{*this};
    ObjectNumber stream_ = 0;
    std::string streamEntries_;
    std::string held_;
    std::optional<ObjectNumber> length_;  // written behind the stream, when it is long
    std::uint64_t streamBytes_ = 0;
};

}  // namespace qm::pdf
