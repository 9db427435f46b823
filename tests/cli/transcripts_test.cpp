// Transcripts: lines of a shell and everything that they print, both streams and exit statuses.
#include "tests/archive/zip_maker.h"
#include "tests/cli/qmplot_folder.h"

namespace qm::testing_cli {
namespace {

struct Transcript {
    const char* name;
    const char* lines;  // q runs qmplot and prints its exit status
    const char* printed;
};

void PrintTo(const Transcript& row, std::ostream* stream) { *stream << row.lines; }

// clang-format off
const Transcript kTranscripts[] = {
    // Nothing that somebody may need is written over.
    {"SecondPlotOfTwoStays", "cp a.plt b.plt; q convert a.plt b.plt; cmp a.plt b.plt",
     "qmplot: b.plt: is not written, because it exists and could be a plot of yours; "
     "-o DIR writes elsewhere, --force-overwrite replaces it\n[2]\n"},
    {"PlotIsReplacedOnDemand", "cp pages.plt b.plt; q convert a.plt b.plt --force-overwrite; q info b.plt | head -n 1",
     "[0]\nb.plt: HPGL/2, 1 page\n"},
    {"EmptyFileIsNobodysPlot", ": >b.hpgl; q convert a.plt b.hpgl", "[0]\n"},
    {"InputStays", "cp a.plt b; q convert --force-overwrite a.plt ./a.plt; cmp a.plt b",
     "qmplot: ./a.plt: is not written, because it is one of the files to convert\n[2]\n"},
    {"LinkedInputStays", "cp a.plt b; ln -s a.plt c.svg; q convert a.plt c.svg; q convert - a.plt <a.plt; cmp a.plt b",
     "qmplot: c.svg: is not written, because it is one of the files to convert\n[2]\n"
     "qmplot: a.plt: is not written, because it is one of the files to convert\n[2]\n"},
    {"InputsOfABatchStay", "cp a.plt b; q convert -o . --to plt a.plt pages.plt 2>&1 | grep -c 'is not written'; cmp a.plt b",
     "2\n"},
    {"ScriptStays", "echo 'object 1203' >r; q replay r ./r; cat r; q replay r ''",
     "qmplot: ./r: is not written, because it is the script\n[2]\nobject 1203\nqmplot: OUT is empty; see qmplot replay --help\n[2]\n"},
    {"ScriptIsReplayed", "printf 'object 1203\\nAppendLine 1 2 3 4\\n' >r; q replay r v; tail -n 2 v; printf 'object 1206\\nfrob\\n' >r; q replay --format hprtl r x; ls x",
     "[0]\nPU1,-2PD3,-4;\r\nPU;PG;qmplot: r:2: no such call: frob\n[2]\nls: cannot access 'x': No such file or directory\n"},
    {"ReportIsNoPlot", "cp a.plt b; q convert -o out --report a.plt pages.plt; cmp a.plt b; q convert -o out --report - a.plt",
     "qmplot: a.plt: is not added to, because it is no report; --report names the file for the lines about the others\n[2]\n"
     "qmplot: --report wants a file; '-' is none\n[2]\n"},

    // -o names a folder or the one file.
    {"OutputIsAFile", "q convert -o result.png a.plt; head -c 4 result.png | tail -c 3; echo; q convert -o both.pdf a.plt pages.plt",
     "[0]\nPNG\nqmplot: both.pdf names one file, but there are several to convert; -o DIR takes them; "
     "see qmplot convert --help\n[2]\n"},
    {"OutputIsAFolderWithAnEnding", "mkdir x.svg; q convert -o x.svg a.plt; ls x.svg", "[0]\na.svg\n"},
    {"StandardOutput", "q convert --to svg a.plt - | tail -n 2; q convert --to svg pages.plt -; q convert a.plt -",
     "</svg>\n[0]\n"
     "qmplot: pages.plt: has 3 pages, and this format holds one; --page chooses it\n[2]\n"
     "qmplot: standard output has no ending; --to chooses the format; see qmplot convert --help\n[2]\n"},
    {"NameWithoutAnEnding", "q convert --to png --size 64 a.plt thumb; od -An -tu1 -j 16 -N 8 thumb; q convert --to png a.plt b.svg",
     "[0]\n   0   0   0  64   0   0   0  42\n"
     "qmplot: --to is for -o DIR and for standard output; b.svg has its ending; see qmplot convert --help\n[2]\n"},
    {"PagesWithoutAnEnding", "mkdir o.d; q convert --to svg --page 1-2 pages.plt o.d/n; q convert --to svg --skip-done -v pages.plt o.d/n; ls o.d; "
     "q convert --to dxf --timeout 60 a.plt n; tail -n 1 n; q convert --to svg a.plt ''",
     "[0]\nqmplot: skipped: pages.plt: done already\n[0]\nn-1\nn-2\n[0]\nEOF\nqmplot: OUT is empty; see qmplot convert --help\n[2]\n"},
    {"OnePageToStandardOutput", "q convert --page 2 pages.plt 2.svg; qmplot convert --page 2 --to svg pages.plt - | cmp - 2.svg", "[0]\n"},
    {"PipeIsClosed", "(sleep 0.1; qmplot convert --to svg a.plt - 2>err; echo $? >>err) | true; cat err", "0\n"},

    // Batches.
    {"BatchGoesOn", "q convert -o out none.plt a.plt letter.txt a.plt empty.plt; ls out",
     "qmplot: none.plt: cannot be read: No such file or directory\n"
     "qmplot: letter.txt: not a plot file; --force reads it all the same\n"
     "qmplot: a.plt: would be written to out/a.svg, as a.plt; convert one of them to another folder\n"
     "qmplot: empty.plt: draws nothing, nothing is written\n"
     "qmplot: 1 converted, 4 failed, 0 skipped\n[2]\na.svg\n"},
    {"WorstStatus", "q convert -q -o out letter.txt a.plt 2>&1 | tail -n 1", "[1]\n"},
    {"FolderIsWalked", "mkdir -p f/s .h f/.h; cp a.plt f; cp pages.plt f/s; cp letter.txt f; touch f/.x; ln -s .. f/loop; mkfifo f/p; "
     "q convert -o f/out -v f; q convert -o f/out f; cd f/out; find . -name '*.svg' | sort",
     "qmplot: f/a.plt: 1 page, 893 bytes, f/out/a.svg\n"
     "qmplot: skipped: f/letter.txt: not a plot file; --force reads it all the same\n"
     "qmplot: f/s/pages.plt: 3 pages, 2628 bytes, f/out/s/pages-1.svg f/out/s/pages-2.svg f/out/s/pages-3.svg\n"
     "qmplot: 2 converted, 0 failed, 5 skipped\n[0]\n"
     "qmplot: 2 converted, 0 failed, 6 skipped\n[0]\n"
     "./a.svg\n./s/pages-1.svg\n./s/pages-2.svg\n./s/pages-3.svg\n"},
    {"FolderWithoutPlots", "mkdir f; cp letter.txt f; q convert -o out f",
     "qmplot: no plot files were found\nqmplot: 0 converted, 0 failed, 1 skipped\n[1]\n"},
    {"FolderNamesOfABatch", "mkdir 'a.b'; cp a.plt a.b; q convert -q -o out a.b pages.plt; ls out",
     "[0]\na.svg\npages-1.svg\npages-2.svg\npages-3.svg\n"},

    // Many files.
    {"NamesOfAList", "mkdir f; cp pages.plt f/a.plt; printf '%s\\n' a.plt '' \"$PWD/f/a.plt\" ../none/../f/a.plt >l; q convert -o out --files-from l; "
     "find out -name '*.svg' | sed \"s#$PWD##\" | sort",
     "qmplot: ../none/../f/a.plt: cannot be read: No such file or directory\nqmplot: 2 converted, 1 failed, 0 skipped\n[2]\n"
     "out/a.svg\nout/f/a-1.svg\nout/f/a-2.svg\nout/f/a-3.svg\n"},
    {"ListWithZeros", "cp a.plt 'x\ny.plt'; printf 'a.plt\\0x\ny.plt' | q convert -o out -0 --files-from -; ls -b out",
     "qmplot: 2 converted, 0 failed, 0 skipped\n[0]\na.svg\nx\\ny.svg\n"},
    {"DoneIsSkipped", "q convert -q -o out a.plt pages.plt; sleep 0.02; touch a.plt; sleep 0.02; rm out/pages-2.svg; "
     "q convert -v --skip-done -o out a.plt pages.plt; rm out/pages-1.svg; q convert --skip-done -o out a.plt pages.plt",
     "[0]\nqmplot: a.plt: 1 page, 893 bytes, out/a.svg\nqmplot: skipped: pages.plt: done already\n"
     "qmplot: 1 converted, 0 failed, 1 skipped\n[0]\nqmplot: 1 converted, 0 failed, 1 skipped\n[0]\n"},
    {"OutputOfAnotherIsNotDone", "cp a.plt a.hpgl; cp pages.plt b.plt; cp a.plt b-1.plt; for i in 1 2; do q convert -o out -q --skip-done a.plt a.hpgl b.plt b-1.plt; done",
     "qmplot: a.hpgl: would be written to out/a.svg, as a.plt; convert one of them to another folder\n"
     "qmplot: b-1.plt: would be written to out/b-1.svg, as b.plt; convert one of them to another folder\n[2]\n"
     "qmplot: a.hpgl: would be written to out/a.svg, as a.plt; convert one of them to another folder\n"
     "qmplot: b-1.plt: would be written to out/b-1.svg, as b.plt; convert one of them to another folder\n[2]\n"},
    {"Report", "q convert -q -o out --report r --timeout 60 a.plt letter.txt; sed 's/\"seconds\":[0-9.]*/S/' r",
     "qmplot: letter.txt: not a plot file; --force reads it all the same\n[1]\n"
     "{\"outcome\":\"converted\",\"status\":0,\"input\":\"a.plt\",\"outputs\":[\"out/a.svg\"],\"pages\":1,\"bytes\":893,S,\"message\":\"\"}\n"
     "{\"outcome\":\"failed\",\"status\":1,\"input\":\"letter.txt\",\"outputs\":[],\"pages\":0,\"bytes\":0,S,"
     "\"message\":\"letter.txt: not a plot file; --force reads it all the same\"}\n"},
    {"TimeIsUp", "mkfifo p; sleep 9 >p & q convert -o out --timeout 0.3 p a.plt; ls out; kill $!",
     "qmplot: p: takes longer than --timeout allows\nqmplot: 1 converted, 1 failed, 0 skipped\n[2]\na.svg\n"},
    {"MemoryIsUp", "(printf 'IN;IN;IN;IN;IN;IN;\\033%%0A\\033*v6W\\000\\003\\010\\010\\010\\010\\033*r9000s9000T\\033*r1A'; "
     "for i in $(seq 8000); do printf '\\033*b9W123456789'; done) >b; q convert -o out --max-memory 64 a.plt b; ls out",
     "qmplot: b: wants more memory than --max-memory allows\nqmplot: 1 converted, 1 failed, 0 skipped\n[2]\na.svg\n"},
    {"RowOfHalfABillionDots", "printf 'IN;\\033%%1A\\033*r490000000S\\033*r1A\\033*b1W\\377\\033*rC' >w; q convert -q --force --max-memory 800 w w.svg", "[0]\n"},
    {"ChildrenKnowOfEachOther", "cp a.plt a.hpgl; cp a.plt b; q convert -o out --timeout 60 a.plt a.hpgl; "
     "q convert -o . --to plt --force-overwrite --timeout 60 a.hpgl a.plt; cmp a.plt b",
     "qmplot: a.hpgl: would be written to out/a.svg, as a.plt; convert one of them to another folder\n"
     "qmplot: 1 converted, 1 failed, 0 skipped\n[2]\n"
     "qmplot: ./a.plt: is not written, because it is one of the files to convert\n"
     "qmplot: a.plt: would be written to ./a.plt, as a.hpgl; convert one of them to another folder\n"
     "qmplot: 0 converted, 2 failed, 0 skipped\n[2]\n"},
    {"ChildWithoutAParentWritesNothing", "q convert --child=named a.plt a.svg 3</dev/null | tail -n 1; find . -name a.svg",
     "qmplot: the process that converts the other files has ended\n[2]\n"},
    {"ChildrenSkipToo", "mkdir f; cp letter.txt a.plt f; q convert -o out --timeout 60 f",
     "qmplot: 1 converted, 0 failed, 1 skipped\n[0]\n"},
    {"RunOverManyMachines", "cp a.plt a.hpgl; cp pages.plt b.plt; cp a.plt b-1.plt; cp a.plt c.plt; cp a.plt c-2.plt; n=$(printf 'c\\134\\344\\042\\001.plt'); cp a.plt \"$n\"; "
     "printf '%s\\n' b.plt pages.plt a.plt a.hpgl letter.txt b-1.plt c.plt c-2.plt \"$n\" >l; "
     "m=" QM_EXAMPLES "/many-machines; export PART_SIZE=1; for i in 1 2; do $m/prepare-run l r; "
     "for p in r/parts/*; do $m/convert-part $p out r/reports --timeout 60 2>/dev/null; done; grep -c . r/parts/*; $m/tally l r; echo [$?]; done",
     "r/parts/000000:6\nr/parts/000001:1\nr/parts/000002:1\nr/parts/000003:1\n"
     "9 plots: 6 converted, 0 found complete, 3 failed, 0 converted twice, 0 left\nfailed: a.hpgl\nfailed: letter.txt\nfailed: b-1.plt\n[1]\n"
     "r/parts/000000:6\nr/parts/000001:1\nr/parts/000002:1\nr/parts/000003:1\n"
     "9 plots: 4 converted, 0 found complete, 3 failed, 2 converted twice, 0 left\n"
     "twice: b.plt\ntwice: a.plt\nfailed: a.hpgl\nfailed: letter.txt\nfailed: b-1.plt\n[2]\n"},
    {"RunOfAKilledQmplot", "printf '#!/bin/sh\\nkill -9 $$' >k; chmod +x k; echo a.plt >l; m=" QM_EXAMPLES "/many-machines; $m/prepare-run l r; "
     "QMPLOT=./k $m/convert-part r/parts/000001 out r/reports 2>/dev/null; echo [$?]; $m/tally l r",
     "[137]\n1 plots: 0 converted, 0 found complete, 0 failed, 0 converted twice, 1 left\nleft: a.plt\n"},

    // Archives.
    {"ArchiveWithoutAPlot", "q info other.zip", "qmplot: other.zip: not a plot file: a zip archive that holds no plan.prn\n[1]\n"},
    {"ArchiveIsEncrypted", "q info locked.zip; q convert --force locked.zip a.svg",
     "qmplot: locked.zip: the archive cannot be read: its plan.prn is encrypted\n[1]\n"
     "qmplot: locked.zip: the archive cannot be read: its plan.prn is encrypted\n[1]\n"},
    {"ArchiveIsCut", "head -c 99 plan.zip >cut.zip; q info cut.zip; q detect cut.zip",
     "qmplot: cut.zip: the archive cannot be read: it is damaged: it has no complete list of its files\n[1]\n"
     "cut.zip: not a plot file\n[1]\n"},
    {"ArchiveIsDamaged", "printf 'XXXX' | dd of=plan.zip bs=1 seek=90 conv=notrunc 2>dd; q info plan.zip",
     "qmplot: plan.zip: the archive cannot be read: its plan.prn is damaged, or the folder for temporary files is full\n[1]\n"},
    {"ArchiveOfAnUnknownMethod", "q info method.zip",
     "qmplot: method.zip: the archive cannot be read: its plan.prn is damaged, or packed by a method that cannot be unpacked here (method 97)\n[1]\n"},
    {"NoFolderForTemporaryFiles", "TMPDIR=/none q info plan.zip",
     "qmplot: plan.zip: the archive cannot be read: the folder for temporary files cannot be written (TMPDIR chooses another)\n[1]\n"},
    {"NoArchiveLibrary", "cp \"$(command -v qmplot)\" alone; ./alone info plan.zip",
     "qmplot: plan.zip: the archive cannot be read: the archive library QmZipx is not beside the program\n"},
    {"ArchiveFromAPipe", "cat plan.zip | q info - | head -n 1", "standard input: Nemetschek Allplan, 1 page\n"},

    // What detection does not know.
    {"Forced", "printf 'PD1016,0;' >t; q info t; q info --force t; q convert --force t t.svg; q trace --force t | grep 'Line '; q trace t",
     "qmplot: t: not a plot file; --force reads it all the same\n[1]\n"
     "t: HPGL/2, 1 page\n  Page 1: 25.4 x 0.0 mm, lower left at 0.0, 0.0\n    1 lines\n[0]\n[0]\n"
     "block1 AppendLine 0 0 1016 0\nresult E_FAIL\n[1]\n"},
    {"KnownPlotIsNotChanged", "qmplot trace --force a.plt >f; qmplot trace a.plt | cmp - f", ""},

    // info.
    {"InfoOfMany", "q info -q pages.plt none.plt empty.plt | grep -e HPGL -e '\\['",
     "qmplot: none.plt: cannot be read: No such file or directory\npages.plt: HPGL/2, 3 pages\nempty.plt: HPGL/2, 0 pages\n[2]\n"},
    {"InfoNumbersPagesAsPageDoes", "printf 'IN;SP1;PD9,9;PG;IW0,0,1,1;PU5,5;PD6,6;PG;IW;PU0,0;PD508,0;' >g; q info g | grep Page; q convert --page 2 g g.svg",
     "  Page 1: 0.2 x 0.2 mm, lower left at 0.0, 0.0\n  Page 2 (\"Page 3\"): 12.7 x 0.0 mm, lower left at 0.0, 0.0\n[0]\n"},
    {"InfoTellsColoursAndTexts", "printf 'IN;IN;IN;SP1;PC1,255,0,0;PD9,9;PC1,0,0,255;PU;LBPl\\374n\\233\"\\003LB \\003' >c; q info --texts c | tail -n 4",
     "    pen   1  #ff0000 #0000ff        51 drawn  layer \"Layer no.: 1\"\n    text \"Pl\303\274n\\x9B\\\"\" at 0.5, -0.0\n    text \" \"\n[0]\n"},
    {"OnlyWhite", "printf 'IN;SP0;PD9,9;PU;PU;PU;' >w; q info w | grep white; q convert w w.pdf; q convert w w.hp; q convert --pen 0=black w w.pdf",
     "    everything on page 1 is white; --pen 0=black shows it\nqmplot: w: everything on page 1 is white; --pen 0=black shows it\n[0]\n"
     "qmplot: w: everything on page 1 is white\n[0]\n[0]\n"},
    {"IgnoredScale", "printf 'IN;SP1;SC0,9,0,9;PD9,9;PU;PU;' >c; q info c | wc -l; q info -q c | wc -l; q info --reading plotter c | wc -l",
     "qmplot: c: a scale (SC) without scaling points (IP) in front is ignored, as the document engine does; "
     "--reading plotter scales\n5\n5\n5\n"},
    {"InfoAsJson", "q info --json a.plt none",
     "{\"file\":\"a.plt\",\"format\":\"HPGL/2\",\"pages\":[{\"number\":1,\"name\":\"Page 1\","
     "\"extent\":{\"x\":0.000,\"y\":0.000,\"width\":25.000,\"height\":12.500},\"rotation\":0,\"onlyWhite\":false,"
     "\"counts\":{\"lines\":3,\"polylines\":0,\"filledAreas\":0,\"rectangles\":0,\"circles\":0,\"arcs\":0,\"texts\":0,"
     "\"pictures\":0,\"fillPatterns\":0},\"pens\":[{\"number\":0,\"colours\":[\"#ffffff\"],\"drawn\":0,\"layer\":\"Layer no.: 0\"},"
     "{\"number\":1,\"colours\":[\"#000000\"],\"drawn\":3,\"layer\":\"Layer no.: 1\"}],\"pictures\":[],\"texts\":[]}],\"notes\":[]}\n"
     "qmplot: none: cannot be read: No such file or directory\n"
     "{\"file\":\"none\",\"error\":\"none: cannot be read: No such file or directory\",\"status\":2}\n[2]\n"},
    {"DetectAsJson", "cp a.plt \"$(printf 'q\\377\"')\"; q detect --json q* letter.txt",
     "{\"file\":\"q\\uDCFF\\\"\",\"format\":\"HPGL/2\"}\n{\"file\":\"letter.txt\",\"format\":null}\n[1]\n"},

    // The sheet: 25 x 12.5 mm of drawing, less half a pen.
    {"Margin", "q convert --margin 10 a.plt a.svg; qmplot convert --margin 0 --to svg a.plt - | cat - a.svg | grep -o 'width=.*mm'",
     "[0]\nwidth=\"25mm\" height=\"12.5mm\nwidth=\"45mm\" height=\"32.5mm\n"},
    {"PaperLiesAsTheDrawingDoes", "q convert --paper A5 a.plt a.svg; qmplot convert --paper 148x210 --rotate 90 --to svg a.plt - | cat a.svg - | grep -o -e 'width=.*mm' -e 'matrix.[^\"]*'",
     "[0]\nwidth=\"210mm\" height=\"148mm\nmatrix(1 0 0 -1 3700 3210)\nwidth=\"148mm\" height=\"210mm\nmatrix(0 1 1 0 2710 3700)\n"},
    {"FittedToThePaper", "q convert --paper 60x60 --fit a.plt a.svg; grep -o -e 'width=.*viewBox[^>]*' a.svg",
     "[0]\nwidth=\"60mm\" height=\"60mm\" viewBox=\"0 0 1200 1200\"\n"},
    {"PaperTooSmall", "q convert --paper 20x20 --rotate 180 a.plt a.png; q convert --fit a.plt a.svg; q convert --paper a9 a.plt a.svg; q convert --paper a4 --fit --margin 105 a.plt a.svg",
     "qmplot: a.plt: page 1 is larger than the paper, which cuts it; --fit scales it\n[0]\n"
     "qmplot: --fit wants --paper as well; see qmplot convert --help\n[2]\n"
     "qmplot: --paper: 'a9' is no paper; a0 to a5, letter, legal, tabloid or 297x210 are; see qmplot convert --help\n[2]\n"
     "qmplot: --margin leaves nothing of the paper for --fit; see qmplot convert --help\n[2]\n"},
    {"Background", "q convert --background '#08F' a.plt a.svg; grep -c '<rect.*fill=\"#08f\"' a.svg; q convert --background none a.plt a.png; od -An -tu1 -j25 -N1 a.png; "
     "q convert --background plaid a.plt a.svg",
     "[0]\n1\n[0]\n   6\nqmplot: --background: 'plaid' is no colour; red or #ff0000 is; see qmplot convert --help\n[2]\n"},

    // The look.
    {"PensAndWidths", "q convert --pen 2=red,1 --pen 1=,0.5 --pen 7=red --pens 0,2- --line-width 2 pages.plt p.svg; cat p-*.svg | grep -o 'stroke=.*\"'",
     "qmplot: pages.plt: pen 0 draws nothing\nqmplot: pages.plt: pen 7 draws nothing\n"
     "qmplot: pages.plt: page 1 shows nothing and is not written\n[0]\n"
     "stroke=\"#f00\" stroke-width=\"40\"\nstroke=\"#0f0\" stroke-width=\"80\"\n"},
    {"LooksOfOtherFormats", "q convert --pen 1=red -o out a.plt; q convert --pen 1=red --rtl a.plt r.plt; q convert --mono a.plt b.plt; q convert --paper a4 a.plt a.dxf",
     "[0]\n[0]\nqmplot: --mono means nothing for HP-GL/2, only for svg, pdf, png, html, DXF, HP-GL/2 (.plt with --compact), HP-RTL (.rtl, or .plt with --rtl); see qmplot convert --help\n[2]\n"
     "qmplot: --paper means nothing for DXF, only for svg, pdf, png; see qmplot convert --help\n[2]\n"},
    {"NoLooks", "q convert --pen 1 a.plt a.svg; q convert --pen x=red a.plt a.svg; q convert --pen 1=redd a.plt a.svg; q convert --pen 1=red,-1 a.plt a.svg; q convert --pens 3-1 a.plt a.svg",
     "qmplot: --pen: '1' is no pen; 2=red or 2=#ff0000,0.5 is; see qmplot convert --help\n[2]\n"
     "qmplot: --pen: 'x=red' is no pen; 2=red or 2=#ff0000,0.5 is; see qmplot convert --help\n[2]\n"
     "qmplot: --pen: 'redd' is no colour; red or #ff0000 is; see qmplot convert --help\n[2]\n"
     "qmplot: --pen: '-1' is no number from 0 to 1000; see qmplot convert --help\n[2]\n"
     "qmplot: --pens: '3-1' names no pens; 1 or 1,3-5 or 4- do; see qmplot convert --help\n[2]\n"},

    // Plots in few bytes.
    {"CompactPlotsSettle", "for f in " QM_EXAMPLES "/*.plt; do qmplot convert -q --compact $f 1.plt --force-overwrite || continue; "
     "qmplot convert -q --compact 1.plt 2.plt --force-overwrite; cmp 1.plt 2.plt; qmplot convert -q $f p.plt --force-overwrite; "
     "[ $(wc -c <1.plt) -lt $(wc -c <p.plt) ] && echo smaller; done | sort | uniq -c | tr -s ' '",
     " 9 smaller\n"},
    {"CompactPlots", "q convert --compact --pen 1=red a.plt b.plt; head -n 1 b.plt; grep -a -o 'PC.*SP1' b.plt; q convert --compact a.plt a.svg; q convert --compact --rtl a.plt c.plt",
     "[0]\nIN;PU;PA;TR0;MC;LT;FT;\nPC1,255,0,0;PW0,1;SP1\n"
     "qmplot: --compact means nothing for svg, only for HP-GL/2 (.plt with --compact); see qmplot convert --help\n[2]\n"
     "qmplot: --compact means nothing for HP-RTL (.rtl, or .plt with --rtl), only for HP-GL/2 (.plt with --compact); see qmplot convert --help\n[2]\n"},
    {"SquarePicturesSettle", "printf 'IN;SP1;PU0,0;PD1000,0,1000,1000,300,500;PU;PU;PU;' >s; for b in 1 8 24; do o=\"--rtl --dpi 40 --bits $b\"; "
     "qmplot convert $o s 1.plt --force-overwrite; qmplot convert $o 1.plt 2.plt --force-overwrite; cmp 1.plt 2.plt; qmplot info 2.plt | grep -o '[0-9]* x [0-9]* dots'; done",
     "40 x 41 dots\n40 x 41 dots\n40 x 41 dots\n"},

    // Title, creator and date.
    {"FilesSayWhatTheyAre", "cp a.plt plän.plt; export SOURCE_DATE_EPOCH=951825600; q convert plän.plt a.svg; grep -o -e '<title>[^<]*' -e 'dc:creator[^/]*' a.svg; "
     "q convert --dpi 30 plän.plt a.png; tr '\\0' '|' <a.png | grep -a -o -e 'Title.*Page 1' -e 'Software.qmplot' -e 'Time.*00Z'; "
     "unset SOURCE_DATE_EPOCH; qmplot convert a.plt b.svg; grep -c dc:date b.svg; qmplot convert --to svg a.plt - | cmp - b.svg",
     "[0]\n<title>plän.plt, Page 1\ndc:creator=\"qmplot\" dc:date=\"2000-02-29T12:00:00Z\"\n[0]\n"
     "Title|||||plän.plt, Page 1\nSoftware|qmplot\nTime|2000-02-29T12:00:00Z\n0\n"},

    // view: a page below the folder for caches, one a plot, and the browser where there is a screen.
    {"ViewWritesAPageToTheCache", "unset DISPLAY WAYLAND_DISPLAY; export HOME=$PWD/h TMPDIR=$PWD; w() { q view \"$@\" | sed \"s#$PWD##; s#-[0-9]*.html#-N.html#\"; }; "
     "XDG_CACHE_HOME=$PWD/c w a.plt; unset XDG_CACHE_HOME; w --no-open - <a.plt; HOME= w -q a.plt; grep -o '<title>.*</title>' c/qmplot/a-*; HOME=/dev/null q view a.plt none",
     "qmplot: no browser could be started; open that file with one\n/c/qmplot/a-N.html\n[0]\n/h/.cache/qmplot/standard-input-N.html\n[0]\n/qmplot/a-N.html\n[0]\n"
     "<title>a.plt</title>\nqmplot: /dev/null/.cache/qmplot: cannot be made: Not a directory\nqmplot: /dev/null/.cache/qmplot: cannot be made: Not a directory\n[2]\n"},
    {"ViewStartsTheBrowser", "printf '#!/bin/sh\\necho said; echo said >&2; echo \"$1\" >opened' >xdg-open; chmod +x xdg-open; export PATH=$PWD:$PATH XDG_CACHE_HOME=$PWD/c; "
     "WAYLAND_DISPLAY=w q view a.plt >page; for i in $(seq 99); do [ -s opened ] && break; sleep 0.05; done; sed 's#.*/c/##; s#-[0-9]*.html#-N.html#' page; head -n 1 page | cmp opened -",
     "qmplot/a-N.html\n[0]\n"},
    {"ProgressIsALineOfTheTerminal", "cp " QM_EXAMPLES "/chart.plt 'Plan in Gr\303\266\303\237e L.plt'; for n in 50 12; do "
     "script -qec \"stty cols $n; (sleep 1.1; echo Plan*) | qmplot convert --force-overwrite --files-from - -o o\" /dev/null </dev/null | tr '\\r' '\\n' | sed -n 's/\\x1b\\[K\\(.* 9 %\\)/\\1/p'; done",
     "file 1 of 1: ...r\303\266\303\237e L.plt [#-------------]   9 %\n  9 %\n"},

    // Pages and formats.
    {"ChainThatFillsItsBuffer", "awk 'BEGIN{printf \"IN;SP1;PU0,0;PD\"; for(i=1;i<65536;i++) printf \"%d,%d,\",i,i%7; print \";PU;\"}' >c; q convert --force c c.plt; grep -o 'P[UD].*' c.plt; wc -l <c.plt",
     "[0]\nPU0,0PD;PA1,1;\r\nPU;PG;\n65542\n"},
    {"TitleIsTheNameAlone", "mkdir d; cp a.plt d; q convert -q d/a.plt a.html; grep -o '<title>.*</title>' a.html", "[0]\n<title>a.plt</title>\n"},
    {"PagesOfAList", "q convert --page 1,3- pages.plt p.svg; q convert --page 2,2-3 pages.plt q.pdf; ls p*.svg q*; q convert --page 2-3 pages.plt r.plt; q info r.plt | grep -c Page",
     "[0]\n[0]\np-1.svg\np-3.svg\nq.pdf\n[0]\n2\n"},
    {"NoSuchPages", "q convert --page 2-4 pages.plt p.svg; q convert --page 3-2 pages.plt p.svg",
     "qmplot: pages.plt: has no page 4, its last one is 3\n[2]\n"
     "qmplot: --page: '3-2' names no pages; 2 or 1-3,5 or 4- do; see qmplot convert --help\n[2]\n"},
    {"EndingsOfPlots", "q convert a.plt a.hpgl; q convert a.plt a.HPG; q convert a.plt a.hp; cmp a.hpgl a.HPG; cmp a.hp a.HPG; "
     "q convert --dpi 50 a.plt a.rtl; q convert --dpi 50 --rtl a.plt b.hpgl; cmp a.rtl b.hpgl",
     "[0]\n[0]\n[0]\n[0]\n[0]\n"},
    {"OptionsOfOtherFormats", "q convert --bits 8 a.plt b.plt; q convert -o out --dpi 9 a.plt pages.plt",
     "qmplot: --bits means nothing for HP-GL/2, only for HP-RTL (.rtl, or .plt with --rtl); see qmplot convert --help\n[2]\n"
     "qmplot: --dpi means nothing for svg, only for png, HP-RTL (.rtl, or .plt with --rtl); see qmplot convert --help\n[2]\n"},
    {"Quiet", "q convert -q -o out a.plt pages.plt; q convert -v a.plt b.svg", "[0]\nqmplot: a.plt: 1 page, 893 bytes, b.svg\n[0]\n"},
};
// clang-format on

class Transcripts : public QmplotTest, public testing::WithParamInterface<Transcript> {
  protected:
    void SetUp() override {
        QmplotTest::SetUp();
        using testing_zip::MakeZip;
        std::string plot;
        for (int i = 0; i < 50; ++i) plot += kPlot;
        MakeZip(folder_ / "plan.zip", {{"readme", "x"}, {"PLAN.PRN", plot}});
        MakeZip(folder_ / "other.zip", {{"sheets/plan.prn", plot}});
        MakeZip(folder_ / "locked.zip", {{"readme", "x"}, {"plan.prn", plot, true, true}});
        MakeZip(folder_ / "method.zip", {{"plan.prn", plot}});
        std::string zip = Get("method.zip");
        zip[8] = zip[zip.find("PK\1\2") + 10] = 97;
        Put("method.zip", zip);
    }
};

TEST_P(Transcripts, PrintThis) {
    const std::string prelude =
        "PATH=$(dirname " QM_QMPLOT
        "):$PATH; unset SOURCE_DATE_EPOCH; q() { qmplot \"$@\"; echo \"[$?]\"; }; exec 2>&1; ";
    EXPECT_EQ(RunShell(prelude + GetParam().lines).out, GetParam().printed);
}

INSTANTIATE_TEST_SUITE_P(Qmplot, Transcripts, testing::ValuesIn(kTranscripts),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace qm::testing_cli
