// MakeToken and PhrasesOf: see tokens.h. Commands, escapes and calls come from the program's own
// tables, so that a new one is tried from its first day on.
#include <array>
#include <iterator>

#include "fuzz/tokens.h"
#include "interpreter/command_table.h"
#include "raster/escape_table.h"
#include "replay/replay_calls.h"

namespace qm::fuzz {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kPlotPhrases[] = {
    "\x1b%0A"sv,
    "\x1b%1A"sv,
    "\x1b%0B"sv,
    "\x1b%1B"sv,
    "\x1b%-12345X"sv,
    "\x1b"
    "E"sv,
    "\x1b*v6W\x00\x03\x08\x08\x08\x08"sv,
    "\x1b*v6W\x00\x00\x03\x01\x01\x01"sv,
    "\x1b*v6W\x02\x03\x08\x08\x08\x08"sv,
    "\x1b*r-3U"sv,
    "\x1b*r-4U"sv,
    "\x1b*b5M"sv,
    "\x1b*b10M"sv,
    "\x1b*r9s4T"sv,
    "\x1b*r1A"sv,
    "\x1b.("
    ""sv,
    "\x1b.I81;;17:"sv,
    "@PJL SET RESOLUTION=600\n"sv,
    "@PJL ENTER LANGUAGE=HPGL2\n"sv,
    "\xcd\xca\x10\x02\x01"sv,
    "*Oce"sv,
    "\x1aPLW"sv,
    "BEGBLOCK"sv,
    "IN;SP1;PU;PA0,0;PD9,9;PU;SP0;"sv,
    "CO\"x\";"sv,
    "DT#,1;"sv,
};

constexpr std::string_view kScriptPhrases[] = {
    "object 1203\n",
    "object 1206\n",
    "object 1202\n",
    "object 1100\n",
    "object 1101\n",
    "object 1102\n",
    "end\n",
    "setting UserDPI 300.0\n",
    "setting KeepDrawColors true\n",
    "setting MonoColor true\n",
    "setting UsePenTable true\n",
    "setting UseLineWeights true\n",
    "pentable Measurement true\n",
    "pen 1 0 0x0000FF 0.35\n",
    "pen 2 1 - 0.7\n",
    "attribute PenTable\n",
    "attribute NodeID \"Page 1\"\n",
    "attribute CropMinX 10.0\n",
    "attribute CropMinY 10.0\n",
    "attribute CropMaxX 100.0\n",
    "attribute CropMaxY 1000.0\n",
    "attribute LpiX 1016.0\n",
    "attribute LpiY 254.0\n",
    "attribute DirectionY true\n",
    "attribute OriginalScaling 0.5\n",
    "attribute OriginalTranslationX 9.0\n",
    "attribute OriginalTranslationY nan\n",
    "attribute Layers\n",
};

std::uint32_t Below(Random& random, std::uint32_t bound) { return random() % bound; }

std::string Number(Random& random) {
    constexpr std::string_view kSpecial[] = {
        "0",          "1",          "-1",
        "2",          "3",          "10",
        "90",         "360",        "-360",
        "127",        "128",        "255",
        "256",        "32767",      "32768",
        "-32768",     "65535",      "65536",
        "8388608",    "2147483647", "-2147483648",
        "2147483648", "4294967296", "1e9",
        ".5",         "-.001",      "99999999999999999999",
        "0.0000001",
    };
    switch (Below(random, 4)) {
        case 0:
            return std::string(kSpecial[Below(random, std::size(kSpecial))]);
        case 1:
            return std::to_string(Below(random, 16));
        case 2:
            return std::to_string(static_cast<int>(Below(random, 20000)) - 5000);
        default:
            return std::to_string(Below(random, 1000)) + '.' + std::to_string(Below(random, 100));
    }
}

std::string RandomBytes(Random& random, std::uint32_t most) {
    std::string bytes(Below(random, most + 1), '\0');
    // Runs, as pictures have them, or anything.
    const std::uint32_t values = Below(random, 2) == 0 ? 4 : 256;
    for (char& byte : bytes)
        byte = static_cast<char>(static_cast<std::uint8_t>(Below(random, values) - 1));
    return bytes;
}

std::string Text(Random& random) {
    std::string text(Below(random, 12), ' ');
    for (char& letter : text)
        letter = static_cast<char>(static_cast<std::uint8_t>(Below(random, 256)));
    return text;
}

std::string MakeCommand(Random& random) {
    const CommandList commands = AllCommands();
    const std::string mnemonic =
        (commands.begin() + Below(random, static_cast<std::uint32_t>(commands.count)))->mnemonic;
    if (mnemonic == "LB") return mnemonic + Text(random) + '\x03';
    std::string command = mnemonic;
    if (mnemonic == "PE") {
        // Flags and digits of both bases, and their ends.
        constexpr std::string_view kFlags = "7:<=>";
        for (std::uint32_t i = Below(random, 24); i > 0; --i) {
            const std::uint32_t kind = Below(random, 6);
            const std::uint32_t value = kind == 0 ? 0 : Below(random, 64);
            command += kind == 0 ? kFlags[Below(random, kFlags.size())]
                                 : static_cast<char>(static_cast<std::uint8_t>(
                                       kind < 4 ? 191 + value : 63 + value));
        }
    } else if (mnemonic == "SM" || mnemonic == "DT") {
        command += static_cast<char>(static_cast<std::uint8_t>(Below(random, 256)));
    } else {
        const std::uint32_t numbers = Below(random, 4) == 0 ? Below(random, 40) : Below(random, 8);
        for (std::uint32_t i = 0; i < numbers; ++i) {
            if (i > 0) command += ',';
            command += Number(random);
        }
    }
    return command + ';';
}

Token MakeEscape(Random& random) {
    const EscapeList escapes = AllEscapes();
    const Escape& escape =
        *(escapes.begin() + Below(random, static_cast<std::uint32_t>(escapes.count)));
    Token token;
    token.text = "\x1b" + std::string(escape.group);
    token.counted = escape.letter == 'W' || (escape.letter == 'V' && escape.group[1] == 'b');
    if (token.counted) {
        token.data = RandomBytes(random, 48);
        token.text += std::to_string(token.data.size());
    } else {
        token.text += Below(random, 4) == 0 ? Number(random) : std::to_string(Below(random, 40));
    }
    token.text += escape.letter;
    return token;
}

std::string Points(Random& random, std::uint32_t count) {
    std::string points = ":";
    for (std::uint32_t i = 0; i < count; ++i) points += ' ' + Number(random) + ',' + Number(random);
    return points;
}

std::string Hex(Random& random) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string hex(128, '0');
    for (char& digit : hex) digit = kDigits[Below(random, 16)];
    return hex;
}

// A line whose counts fit, by the syntax that the table tells.
std::string MakeCall(Random& random) {
    const ScriptCallList calls = AllScriptCalls();
    const ScriptCall& call =
        *(calls.begin() + Below(random, static_cast<std::uint32_t>(calls.count)));
    std::string line(call.name);
    const std::uint32_t count = Below(random, 9);
    for (std::string_view rest = call.arguments; !rest.empty();) {
        const std::string_view word = rest.substr(0, rest.find(' '));
        rest.remove_prefix(std::min(rest.size(), word.size() + 1));
        line += ' ';
        if (word == ":") {
            return line + Points(random, count) + '\n';
        } else if (word.front() == '"') {
            line += '"' + std::string(Below(random, 8), 'x') + '"';
        } else if (word == "FILLED" || word == "EVENODD") {
            line += Below(random, 2) == 0 ? "true" : "false";
        } else if (word == "HEX") {
            line += Hex(random);
        } else if (word == "COUNT") {
            line += std::to_string(count);
        } else if (word == "RINGS") {
            line += '1';
        } else if (word == "WIDTH" || word == "HEIGHT" || word == "LINES" ||
                   word == "BYTESPERLINE") {
            line += std::to_string(Below(random, 9));
        } else if (word == "N" || word == "...") {
            line += '0';
        } else if (word == "BBGGRR") {
            return line + '\n';
        } else if (word == "NAME") {
            line += "NodeID";
        } else if (word != "[VALUE]") {
            line += Below(random, 2) == 0 ? std::to_string(Below(random, 5000)) : Number(random);
        }
    }
    return line + '\n';
}

}  // namespace

Phrases PhrasesOf(Language language) {
    if (language == Language::kScript) return {kScriptPhrases, std::size(kScriptPhrases)};
    return {kPlotPhrases, std::size(kPlotPhrases)};
}

Token MakeToken(Language language, Random& random) {
    if (Below(random, 8) == 0) {
        const Phrases phrases = PhrasesOf(language);
        return {
            std::string(phrases.first[Below(random, static_cast<std::uint32_t>(phrases.count))]),
            {},
            false};
    }
    if (language == Language::kScript) return {MakeCall(random), {}, false};
    if (Below(random, 2) == 0) return MakeEscape(random);
    return {MakeCommand(random), {}, false};
}

}  // namespace qm::fuzz
