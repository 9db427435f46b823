// Everything around the import filter refuses in turn: every call on the host, every read of the
// stream; a progress sink asks to stop at every step. Nothing leaks, finished pages stay, and what
// was said before the fault is what is said without one.
#include "fuzz/bad_stream.h"
#include "tests/import/import_fixture.h"

namespace qm {
namespace {

// Three pages, with everything that makes calls of its own.
std::string ThreePages() {
    std::string plot = PlotOf("PD1,1;CI5;LBa\3RA9,9;LT2;PD90,90;PG;");
    plot += "RF1,1,1,1;FT11,1;RA9,9;SP3;PM0;PD9,0,9,9;PM2;FP;PG;RO90;";
    plot += "\x1b%0A\x1b*r8S\x1b*b1W\xAA\x1b*rC\x1b%0BPD7,7;";
    plot.resize(plot.size() + 600, ';');
    return plot;
}

using Lines = std::vector<std::string>;

bool StartsWith(const Lines& whole, const Lines& part) {
    return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

std::ptrdiff_t Pages(const Lines& lines) {
    return std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
        return line.find("contents AddChild ") == 0;
    });
}

// Imports `source`; the host answers `answer` to the call number `refused`. `status` is the first
// failure of the two calls of the filter.
Lines Import(IQmDataObject& source, std::size_t refused, HRESULT answer, HRESULT& status) {
    const LONG before = LiveObjectCount();
    Lines lines;
    {
        const TraceHost host([&](std::string_view line) {
            lines.emplace_back(line);
            return lines.size() == refused + 1 ? answer : S_OK;
        });
        ComPtr<IQmFilter> filter;
        CreateQmFilterHPGL(nullptr, __uuidof(IQmFilter), filter.PutVoid());
        status = filter->OpenDocument(&source, host.MakeDocument().Get(), 0);
        if (status == S_OK) status = filter->GetNode(Variant().Get(), 0, nullptr);
    }
    EXPECT_EQ(LiveObjectCount(), before) << "objects leaked";
    return lines;
}

Lines Import(IQmDataObject& source, HRESULT& status) {
    return Import(source, SIZE_MAX, S_OK, status);
}

ComPtr<DataObject> Source(const ComPtr<IStream>& stream) {
    return MakeObject<DataObject>(stream, std::wstring());
}

TEST(HostFaults, EveryCallRefusedInTurn) {
    const auto source = Source(MemoryStream(ThreePages()));
    HRESULT status = E_FAIL;
    const Lines whole = Import(*source.Get(), status);
    ASSERT_EQ(status, S_OK);
    ASSERT_EQ(Pages(whole), 3);
    std::size_t failed = 0;
    for (const HRESULT answer : {E_FAIL, E_OUTOFMEMORY, E_ABORT}) {
        for (std::size_t call = 0; call < whole.size(); ++call) {
            SCOPED_TRACE(whole[call]);
            const Lines lines = Import(*source.Get(), call, answer, status);
            // The filter has its own word for a host that refuses what it cannot do without.
            EXPECT_TRUE(status == S_OK || status == E_FAIL);
            failed += status == S_OK ? 0 : 1;
            EXPECT_TRUE(StartsWith(
                lines, {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(call) + 1}));
            // A page that was there before is not taken back.
            EXPECT_GE(Pages(lines),
                      Pages({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(call)}));
        }
    }
    EXPECT_GE(failed, 3U * 6U);
    EXPECT_LT(failed, 3U * whole.size());
}

using Fault = BadStream::Fault;

ComPtr<DataObject> Bad(const std::string& plot, const Fault& fault) {
    return Source(ComPtr<IStream>(MakeObject<BadStream>(plot, fault).Get()));
}

TEST(StreamFaults, ThatChangeNothing) {
    const std::string plot = ThreePages();
    HRESULT status = E_FAIL;
    const Lines whole = Import(*Bad(plot, {"sound"}).Get(), status);
    ASSERT_EQ(Pages(whole), 3);
    const auto fault = [](const char* name, auto set) {
        Fault made{name};
        set(made);
        return made;
    };
    const Fault rows[] = {
        fault("a byte a read", [](Fault& f) { f.most = 1; }),
        fault("seven bytes a read", [](Fault& f) { f.most = 7; }),
        fault("full reads that fail", [](Fault& f) { f.full = E_FAIL; }),
        fault("an error at the end", [](Fault& f) { f.behind = STG_E_READFAULT; }),
        fault("no size", [](Fault& f) { f.stat = E_NOTIMPL; }),
        fault("size 0", [](Fault& f) { f.size = 0; }),
        fault("size 1", [](Fault& f) { f.size = 1; }),
        fault("size 4 GiB", [](Fault& f) { f.size = std::uint64_t{1} << 32; }),
        fault("the largest size", [](Fault& f) { f.size = UINT64_MAX - 1; }),
    };
    for (const Fault& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Import(*Bad(plot, row).Get(), status), whole);
        EXPECT_EQ(status, S_OK);
    }
}

// The file ends at every byte: what was read before is what a file that ends there gives.
TEST(StreamFaults, AnErrorAtEveryByte) {
    const std::string plot = ThreePages();
    for (std::size_t end = 0; end < plot.size(); end += 1) {
        HRESULT status = E_FAIL;
        HRESULT cutStatus = E_FAIL;
        Fault fault{"cut"};
        fault.readable = end;
        fault.behind = STG_E_READFAULT;
        const Lines cut = Import(*Bad(plot.substr(0, end), {"sound"}).Get(), cutStatus);
        ASSERT_EQ(Import(*Bad(plot, fault).Get(), status), cut) << end;
        ASSERT_EQ(status, cutStatus) << end;
    }
}

// The file shrinks between two reads, of 16 bytes each, detection's among them.
TEST(StreamFaults, AFileThatShrinks) {
    const std::string plot = ThreePages();
    HRESULT status = E_FAIL;
    Fault fault{"shrinks"};
    fault.most = 16;
    const Lines whole = Import(*Bad(plot, fault).Get(), status);
    std::ptrdiff_t most = 0;
    for (fault.shrinksAt = 0; fault.shrinksAt < plot.size() / 16; ++fault.shrinksAt) {
        const Lines lines = Import(*Bad(plot, fault).Get(), status);
        EXPECT_EQ(status, Pages(lines) == 0 && lines.size() < 3 ? E_FAIL : S_OK) << fault.shrinksAt;
        EXPECT_LE(Pages(lines), Pages(whole));
        EXPECT_GE(Pages(lines), most) << "a later end loses pages";
        most = Pages(lines);
    }
    EXPECT_EQ(most, 3);
}

TEST(Abort, AtEveryStep) {
    const std::string plot = ThreePages();
    const auto stream = MemoryStream(plot);
    Lines whole;
    TraceOptions options;
    const auto collect = [](Lines& lines) {
        return [&lines](std::string_view line) {
            lines.emplace_back(line);
            return S_OK;
        };
    };
    ASSERT_EQ(TraceImport(*Source(stream).Get(), options, collect(whole)), S_OK);
    const auto before = LiveObjectCount();
    std::ptrdiff_t pages = 0;
    for (LONG percent = 1; percent <= 99; ++percent) {
        options.abortAt = percent;
        Lines lines;
        EXPECT_EQ(TraceImport(*Source(stream).Get(), options, collect(lines)), E_ABORT) << percent;
        EXPECT_GE(Pages(lines), pages) << percent;
        pages = Pages(lines);
        EXPECT_EQ(LiveObjectCount(), before) << percent;
    }
    EXPECT_EQ(pages, 3);
}

}  // namespace
}  // namespace qm
