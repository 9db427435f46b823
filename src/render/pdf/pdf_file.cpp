#include "render/pdf/pdf_file.h"

namespace qm::pdf {

namespace {

// Compressed bytes of a stream that are held back; a piece of page content stays below.
constexpr std::size_t kHeldBytes = std::size_t{3} << 17;
// Objects of an object stream: the number within it takes a byte of the cross-reference stream.
constexpr std::size_t kObjectsPerStream = 200;
constexpr std::size_t kObjectStreamBytes = std::size_t{1} << 16;

void AppendBigEndian(std::string& to, std::uint64_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) to += static_cast<char>(value >> (8 * i) & 0xFF);
}

}  // namespace

std::string Reference(ObjectNumber number) { return std::to_string(number) + " 0 R"; }

// Object streams came with 1.5, pages of more than 200 inches with 1.6. The second line tells
// programs that transfer files that this one is binary.
PdfFile::PdfFile(OutputSink& sink) : sink_(sink) { Put("%PDF-1.6\n%\xE2\xE3\xCF\xD3\n"); }

void PdfFile::Put(std::string_view bytes) {
    sink_.Write(bytes);
    offset_ += bytes.size();
}

ObjectNumber PdfFile::NewObject() {
    places_.push_back({});
    return static_cast<ObjectNumber>(places_.size());
}

void PdfFile::WriteObject(ObjectNumber number, std::string_view value) {
    if (container_ == 0) container_ = NewObject();
    places_[number - 1] = {objectCount_, container_};
    index_ += std::to_string(number) + ' ' + std::to_string(objects_.size()) + ' ';
    objects_.append(value) += '\n';
    ++objectCount_;
    const bool full = objectCount_ == kObjectsPerStream || objects_.size() > kObjectStreamBytes;
    if (full && stream_ == 0) FlushObjects();
}

ObjectNumber PdfFile::WriteObject(std::string_view value) {
    const ObjectNumber number = NewObject();
    WriteObject(number, value);
    return number;
}

void PdfFile::FlushObjects() {
    if (objectCount_ == 0) return;
    const std::string entries = "/Type/ObjStm/N " + std::to_string(objectCount_) + "/First " +
                                std::to_string(index_.size());
    const std::string content = index_ + objects_;
    const ObjectNumber container = container_;
    index_.clear();
    objects_.clear();
    objectCount_ = 0;
    container_ = 0;
    WriteStream(container, entries, content);
}

// ----------------------------------------------------------------------------------------- streams

void PdfFile::StreamSink::Write(std::string_view bytes) {
    file_.streamBytes_ += bytes.size();
    if (!file_.length_) {
        file_.held_ += bytes;
        if (file_.held_.size() <= kHeldBytes) return;
        file_.length_ = file_.NewObject();
        file_.PutStreamHead(Reference(*file_.length_));
        bytes = file_.held_;
    }
    file_.Put(bytes);
}

void PdfFile::PutStreamHead(std::string_view length) {
    places_[stream_ - 1] = {offset_, 0};
    Put(std::to_string(stream_) + " 0 obj\n<<" + streamEntries_ + "/Filter/FlateDecode/Length " +
        std::string(length) + ">>\nstream\n");
}

void PdfFile::BeginStream(ObjectNumber number, std::string_view entries) {
    stream_ = number;
    streamEntries_ = entries;
    held_.clear();
    length_.reset();
    streamBytes_ = 0;
    deflater_->Begin();
}

void PdfFile::Append(std::string_view content) { deflater_->Write(content, streamSink_); }

void PdfFile::EndStream() {
    deflater_->End(streamSink_);
    if (!length_) {
        PutStreamHead(std::to_string(held_.size()));
        Put(held_);
    }
    Put("\nendstream\nendobj\n");
    stream_ = 0;
    if (length_) WriteObject(*length_, std::to_string(streamBytes_));
}

void PdfFile::WriteStream(ObjectNumber number, std::string_view entries, std::string_view content) {
    BeginStream(number, entries);
    Append(content);
    EndStream();
}

ObjectNumber PdfFile::WriteStream(std::string_view entries, std::string_view content) {
    const ObjectNumber number = NewObject();
    WriteStream(number, entries, content);
    return number;
}

// --------------------------------------------------------------------------------------------- end

void PdfFile::Finish(ObjectNumber catalogue, ObjectNumber info) {
    FlushObjects();
    const ObjectNumber number = NewObject();
    const std::uint64_t start = offset_;
    places_[number - 1] = {start, 0};
    std::string table("\0\0\0\0\0\0\0", 7);  // object 0, the head of an empty list of free ones
    for (const Place& place : places_) {
        const bool contained = place.container != 0;
        table += contained ? '\2' : '\1';
        AppendBigEndian(table, contained ? place.container : place.offset, 5);
        table += static_cast<char>(contained ? place.offset : 0);
    }
    WriteStream(number,
                "/Type/XRef/W[1 5 1]/Size " + std::to_string(places_.size() + 1) + "/Root " +
                    Reference(catalogue) + "/Info " + Reference(info),
                table);
    Put("startxref\n" + std::to_string(start) + "\n%%EOF\n");
}

}  // namespace qm::pdf
