// The pictures that raster mode makes: pixel formats, compression methods, colours.
#include <gtest/gtest.h>

#include "tests/interpreter/ops_table.h"
#include "tests/raster/raster_plots.h"

namespace qm {
namespace {

// The plot's only picture, from its size on; or all its lines.
std::string PictureOf(const std::string& plot) {
    std::string all;
    for (const std::string& line : OperationsOf(plot)) {
        if (line.rfind("Raster 0 0 ", 0) == 0) {
            const std::size_t colors = line.find(" colors=");
            const std::size_t size = line.rfind(' ', colors - 1);
            const std::size_t rows = line.find(" rows=");
            all += line.substr(size + 1, colors - size - 1) + line.substr(rows);
        } else {
            all += line + "\n";
        }
    }
    return all;
}

struct PictureRow {
    const char* name;
    std::string plot;
    std::string picture;
};

void ExpectPictures(const std::vector<PictureRow>& rows) {
    for (const PictureRow& row : rows) EXPECT_EQ(PictureOf(row.plot), row.picture) << row.name;
}

TEST(RasterPictures, PixelFormats) {
    const std::string four = kStart + "\033*r4s3T";
    const std::string planes = Row("\x90", 'V') + Row("\xA0", 'V');
    std::string manyPlanes;
    for (int i = 0; i < 30; ++i) manyPlanes += Row("\xFF", 'V');
    // clang-format off
    ExpectPictures({
        {"three planes", four + "\033*r-3U" + planes + Row("\xC0") + Row("\xF0") + kBlank,
         "4x3x8 rows=00000000,01010101,07040201"},
        {"three planes begun by a row",
         four + "\033*r-3U" + Row("\xC0") + planes + kBlank + kBlank,
         "4x3x8 rows=00000000,03000201,01010000"},
        {"three planes by ESC*v#W",
         four + "\033*v6W\0\0\3\1\1\1"s + planes + Row("\xC0") + kBlank + kBlank,
         "4x3x8 rows=00000000,00000000,07040201"},
        {"the fourth plane is lost",
         four + "\033*r-4U" + planes + planes + kBlank + kBlank + kBlank,
         "4x3x8 rows=00000000,00000000,07000205"},
        {"four bits begun by a row are packed",
         four + "\033*r-4U" + Row("\x12\x34") + kBlank + kBlank,
         "4x3x4 rows=00000000,00000000,12340000"},
        {"eight bits begun by a row",
         four + "\033*v6W\0\1\10\10\10\10"s + Row("\1\2\3\4") + kBlank + kBlank,
         "4x3x8 rows=00000000,00000000,01020304"},
        {"eight bits begun by a plane", four + "\033*v6W\0\0\10\10\10\10"s + planes + Row("", 'V') +
         Row("\xF0") + kBlank + kBlank, "4x3x8 rows=00000000,00000000,0B080A09"},
        {"24 bits by pixel, colours swapped", kStart + "\033*r3s3T\033*v6W\0\3\10\10\10\10"s +
         Row("\1\2\3\4\5\6\7\10\11") + kBlank + kBlank,
         "3x3x24 rows=000000000000000000000000,000000000000000000000000,030201060504090807000000"},
        {"24 bits by plane are read as by pixel",
         kStart + "\033*r3s3T\033*v6W\0\2\10\10\10\10"s + Row("\1\2\3") + kBlank + kBlank,
         "3x3x24 rows=000000000000000000000000,000000000000000000000000,030201000000000000000000"},
        {"configure data may be short or long", kStart +
         "\033*r3s3T\033*v3W\0\1\10\033*v2W\0\3\033*v9W\0\1\10abcdef"s + Row("\1\2\3") + kBlank +
         kBlank, "3x3x8 rows=00000000,00000000,01020300"},
        {"only -3 and -4 of ESC*r#U count", kStart + "\033*r4u3u1u-2u8s3T" + kRows,
         "8x3x1 " + kStored},
        {"planes never leave their row", four + "\033*r-3U" + Row(std::string(40, '\xFF'), 'V') +
         manyPlanes + kBlank + kBlank + kBlank, "4x3x8 rows=00000000,00000000,07070707"},
    });
    // clang-format on
}

TEST(RasterPictures, CompressionMethods) {
    const std::string start = kStart + "\033*r16s4T";
    const std::string wide = start + "\033*t508R";  // two rows are seen
    const std::string plain = Row("\1\2") + Row("\3\4");
    ExpectPictures({
        {"each row in its own method",
         start + Row("\1\2\3") + "\033*b1m4W\0\5\0\6"s + "\033*b2m2W\xFF\7" + "\033*b3m2W\1\x9",
         "16x4x1 rows=07090000,07070000,05060000,01020000"},
        {"empty rows", start + Row("\1\2") + kBlank + "\033*b3m0W\033*b0m0W",
         "16x4x1 rows=00000000,00000000,00000000,01020000"},
        {"a delta row of no bytes repeats", start + Row("\1\2") + "\033*b3m0W\033*b0W\033*b0W",
         "16x4x1 rows=01020000,01020000,01020000,01020000"},
        {"adaptive", start + "\033*b5m17W\0\0\2\1\2\4\0\1\3\0\3\x20\3\4\5\0\1"s,
         "16x4x1 rows=03040000,03040000,00000000,01020000"},
        {"adaptive goes beyond the source height and ends it",
         start + Row("\1\2") + "\033*b5m3W\5\0\5"s,
         "16x6x1 rows=01020000,01020000,01020000,01020000,01020000,01020000"},
        {"a block of plain rows brings its height", start + "\033*b4m10W\0\0\0\x10\1\2\3\4\5\6"s,
         "16x3x1 rows=05060000,03040000,01020000"},
        {"wider rows are cut", start + "\033*b4m16W\0\0\0\x1F\1\2\3\4\1\2\3\4\5\6\7\x8"s,
         "16x3x1 rows=05060000,01020000,01020000"},
        {"method 4 in colour stores nothing",
         start + "\033*r-3U\033*b4m6W\0\0\0\x10\1\2"s + "\033*b0M" + plain + plain,
         "16x4x8 rows=00000000000001010000000000010000,00000000000000010000000000000100,"
         "00000000000001010000000000010000,00000000000000010000000000000100"},
        {"adaptive: a row a method",
         start + Block(5, "0000020102 0100020107 0200030108 09 0300020106"),
         "16x4x1 rows=08060000,08090000,07070000,01020000"},
        {"adaptive: empty rows become the seed", start + Block(5, "0000020102 040002 050001"),
         "16x4x1 rows=00000000,00000000,00000000,01020000"},
        {"adaptive: copies of no seed", wide + Block(5, "050002"), "16x2x1 rows=00000000,00000000"},
        {"adaptive: no rows at all", start + Block(5, "040000 050000"), ""},
        {"adaptive: delta of one byte is the seed", start + Block(5, "0000020102 030001E0 050001"),
         "16x3x1 rows=01020000,01020000,01020000"},
        {"adaptive: an unknown command ends it",
         wide + Block(5, "00000109 060001 05000001 08") + Block(5, "00000107 800000 00000108"),
         "16x2x1 rows=07000000,09000000"},
        {"adaptive: counts beyond the block, half an entry",
         wide + Block(5, "00000903") + Block(5, "00000109 0400"), "16x2x1 rows=09000000,03000000"},
        {"plain: two rows and a rest", wide + Block(4, "0000000C 0102030405"),
         "16x2x1 rows=03040000,01020000"},
        {"plain: wider than the picture", wide + Block(4, "00000028 0102030405060708090A"),
         "16x2x1 rows=06070000,01020000"},
        {"plain: narrower", wide + Block(4, "00000001 0102"), "16x2x1 rows=02000000,01000000"},
        {"plain: less than a row, then plain rows", start + Block(4, "00000100 01") + plain + plain,
         ""},
        {"plain: width 0 and no width are no block",
         start + Block(4, "00000000 0102") + Block(4, "000000") + "\033*b0M" + plain + plain +
             plain,
         "16x4x1 rows=03040000,01020000,03040000,01020000"},
        {"plain: the input ends", start + "\033*b4m2000W\0\0\0\x10\1\2\3"s, ""},
        {"plain: lying width", start + "\033*b4m2147483647W\xFF\xFF\xFF\xFF\1\2\3", ""},
        {"method 10",
         kStart + "\033*r3s3T\033*v6W\0\3\10\10\10\10"s + "\033*b10m1W\xE1\033*b0W\033*b0W",
         "3x3x24 rows=FFFEFFFFFEFFFFFEFF000000,FFFEFFFFFEFFFFFEFF000000,FFFEFFFFFEFFFFFEFF000000"},
    });
}

std::string Times(int count, const std::string& text) {
    std::string all;
    while (count-- > 0) all += text;
    return all;
}

// The first colours of the only picture's table.
std::string ColoursOf(const std::string& plot, std::size_t count) {
    for (const std::string& line : OperationsOf(plot)) {
        const std::size_t at = line.find("colors=");
        if (at != std::string::npos) return line.substr(at + 7, count * 7 - 1);
    }
    return "no picture";
}

TEST(RasterPictures, Colours) {
    const std::string configured = "000000,0000FF,00FF00,00FFFF,FF0000,FF00FF,FFFF00,FFFFFF";
    const std::string index = "\033*v6W\0\1\10\10\10\10"s;
    const struct {
        const char* name;
        std::string plot;  // in front of the rows
        std::string colours;
    } rows[] = {
        {"pens", "PC1,255,128,0;" + kStart, "FFFFFF,0080FF"},
        {"pens are not read again", "PC1,1,2,3;" + kStart + "\033*v9c1I\033%0BSP1;\033%0A",
         "FFFFFF,090000"},
        {"unless they changed", kStart + "\033*v9a1I\033%0BPC1,1,2,3;\033%0A", "FFFFFF,030201"},
        {"one bit per index: white and black, whatever the pens",
         "PC1,1,2,3;" + kStart + "\033*v6W\0\0\1\1\1\1"s, "FFFFFF,000000"},
        {"but not behind a definition", "PC1,1,2,3;" + kStart + "\033*v9a0i6W\0\0\1\1\1\1"s,
         "000009,030201"},
        {"defaults of indexes", kStart + index, configured},
        {"but not of defined ones", kStart + "\033*v1a2b3c7I" + index,
         "000000,0000FF,00FF00,00FFFF,FF0000,FF00FF,FFFF00,030201"},
        {"components are bytes", kStart + "\033*v257a-1b3C\033*v256i-1i1I", "FFFFFF,03FF01"},
        {"foreground for entry 1", kStart + "\033*v9a3i3S", "FFFFFF,000009"},
        {"for entry 0 when it is not white", kStart + "\033*v1b0i9a3i3S", "000109,000000"},
        {"black is no foreground", kStart + "\033*v1S\033*v9a1I", "FFFFFF,000009"},
        {"colours only in one bit", kStart + "\033*v9a3i3S" + index,
         "000000,0000FF,00FF00,000009,FF0000,FF00FF,FFFF00,FFFFFF"},
        {"three planes", kStart + "\033*r-3U",
         "FFFFFF,FFFF00,FF00FF,FF0000,00FFFF,00FF00,0000FF,000000"},
        {"... which leave the entries beyond", kStart + "\033*r-4U\033*r-3U",
         "FFFFFF,FFFF00,FF00FF,FF0000,00FFFF,00FF00,0000FF,000000,00FFFF,000000"},
        {"four planes", kStart + "\033*r-4U",
         "FFFFFF,000000,FFFF00,000000,FF00FF,000000,FF0000,000000,00FFFF,000000,00FF00,000000,"
         "0000FF,000000,000000,000000"},
        {"a saved palette comes back", kStart + "\033*p0P\033*v9a1I\033*p1P", "FFFFFF,000000"},
        {"one by one", kStart + "\033*p0P\033*v9a1I\033*p0P\033*v8a1I\033*p1P\033*p1P",
         "FFFFFF,000000"},
        {"from an empty stack nothing", kStart + "\033*v9a1I\033*p1P", "FFFFFF,000009"},
        {"twenty are saved, no more",
         kStart + Times(19, "\033*p0P") + "\033*v9a1I\033*p0P\033*v8a1I\033*p0P\033*p1P",
         "FFFFFF,000009"},
        {"the foreground is not saved", kStart + "\033*p0P\033*v9a3i3S\033*p1P", "FFFFFF,000009"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ColoursOf(row.plot + kEight, (row.colours.size() + 1) / 7), row.colours);
    }
}

}  // namespace
}  // namespace qm
