// The Italian language file an installation supplies: a Windows-1252 INI file whose keys s1..s330
// must all be there, since a missing key shows as an empty caption or an empty message box.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "store/convert.h"

namespace {

using Sections = std::map<std::string, std::map<std::string, std::string>>;

std::string readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(" \t\r");
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
}

// Values as the program's INI reader gives them: trimmed, one pair of surrounding quotes taken off.
Sections parseIni(const std::string& utf8) {
    Sections sections;
    std::string current;
    std::istringstream lines(utf8);
    for (std::string line; std::getline(lines, line);) {
        line = trimmed(line);
        if (line.empty()) continue;
        if (line.front() == '[') {
            current = line.substr(1, line.find(']') - 1);
            continue;
        }
        const auto eq = line.find('=');
        std::string value = trimmed(line.substr(eq + 1));
        if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
        EXPECT_TRUE(sections[current].emplace(trimmed(line.substr(0, eq)), value).second) << "twice: " << line;
    }
    return sections;
}

const std::string kPath = std::string(BREVANO_SOURCE_DIR) + "/data/Italiano.lng";

}  // namespace

TEST(LanguageFileTest, IsWindows1252WithoutUtf8Sequences) {
    const std::string bytes = readBytes(kPath);
    ASSERT_FALSE(bytes.empty()) << kPath;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        EXPECT_TRUE(b != 0x81 && b != 0x8D && b != 0x8F && b != 0x90 && b != 0x9D) << "no character at byte " << i;
        const bool utf8Lead = b >= 0xC2 && b <= 0xF4;
        const bool next = i + 1 < bytes.size() && (static_cast<unsigned char>(bytes[i + 1]) & 0xC0) == 0x80;
        EXPECT_FALSE(utf8Lead && next) << "UTF-8 sequence at byte " << i;
    }
}

TEST(LanguageFileTest, HasEveryKeyAndAnEmptySourcePath) {
    Sections ini = parseIni(store::Cp1252ToUtf8(readBytes(kPath)));
    auto& texts = ini["Stringhe"];
    EXPECT_EQ(texts.size(), 330u);
    for (int k = 1; k <= 330; ++k) EXPECT_FALSE(trimmed(texts["s" + std::to_string(k)]).empty()) << "s" << k;
    ASSERT_EQ(ini["Parametri"].count("File"), 1u);
    EXPECT_EQ(ini["Parametri"]["File"], "");
    // Spot checks of accents and of the blanks that joined messages depend on.
    EXPECT_EQ(texts["s13"], "Contabilità");
    EXPECT_EQ(texts["s57"].front(), ' ');
    EXPECT_EQ(texts["s57"].back(), ' ');
    EXPECT_EQ(texts["s263"].back(), ' ');
}
