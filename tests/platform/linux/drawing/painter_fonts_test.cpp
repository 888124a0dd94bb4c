#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include "painter_fixture.h"

namespace vellora {
namespace {

namespace fs = std::filesystem;

// A machine that has a few fonts and no others.
class Fonts {
 public:
  // `files` are paths below the folder of fonts; `rules` go into fontconfig's configuration.
  explicit Fonts(const std::vector<std::string>& files, const std::string& rules = "") {
    std::string pattern = fs::temp_directory_path() / "vellora-fonts-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    fs::create_directory(folder_ / "fonts");
    for (const std::string& file : files) {
      const fs::path target = fs::path("/usr/share/fonts") / file;
      EXPECT_TRUE(fs::exists(target)) << target;
      fs::create_symlink(target, folder_ / "fonts" / target.filename());
    }
    const std::string text = "<?xml version=\"1.0\"?><fontconfig><dir>" +
                             (folder_ / "fonts").string() + "</dir><cachedir>" +
                             (folder_ / "cache").string() + "</cachedir>" + rules + "</fontconfig>";
    FcConfig* const config = FcConfigCreate();
    EXPECT_TRUE(FcConfigParseAndLoadFromMemory(
        config, reinterpret_cast<const FcChar8*>(text.c_str()), FcTrue));
    EXPECT_TRUE(FcConfigBuildFonts(config));
    before_ = FcConfigReference(nullptr);
    FcConfigSetCurrent(config);
    FcConfigDestroy(config);
  }

  ~Fonts() {
    FcConfigSetCurrent(before_);
    FcConfigDestroy(before_);
    fs::remove_all(folder_);
  }

  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;

 private:
  fs::path folder_;
  FcConfig* before_ = nullptr;
};

// The font in that file is taken for one of medium weight.
std::string asMedium(const std::string& file) {
  return "<match target=\"scan\"><test name=\"file\" compare=\"contains\"><string>" +
         fs::path(file).filename().string() +
         "</string></test><edit name=\"weight\"><const>medium</const></edit></match>";
}

// Another family is the machine's sans-serif one.
std::string asSansSerif(const std::string& family) {
  return "<alias><family>sans-serif</family><prefer><family>" + family +
         "</family></prefer></alias>";
}

// A script whose fonts come in regular and bold unless more of them are installed.
struct Script {
  const char* text;
  const char* folder;
  const char* sans;  // file names up to the weight
  const char* other;
  const char* extension;
  const char* otherFamily;
  friend std::ostream& operator<<(std::ostream& out, const Script& script) {
    return out << script.sans;
  }
};

class PainterFontsTest : public PainterTest, public ::testing::WithParamInterface<Script> {
 protected:
  std::string sans(const std::string& weight) const { return file(GetParam().sans, weight); }
  std::string other(const std::string& weight) const { return file(GetParam().other, weight); }

  // The text as it is drawn where there are no fonts but Latin ones and those.
  static Picture with(std::vector<std::string> files, const std::string& rules = "") {
    files.emplace_back("opentype/inter/Inter-Medium.otf");
    const Fonts fonts(files, rules);
    PangoPainter painter;
    CaptionDrawing drawing = captionDrawing(GetParam().text, 400, 44, 24);
    drawing.plateColor = {0, 0, 0, 0};
    return pictureOf(static_cast<const CairoImage&>(*painter.paint(drawing)).pixels());
  }

 private:
  static std::string file(const std::string& family, const std::string& weight) {
    return GetParam().folder + family + "-" + weight + GetParam().extension;
  }
};

constexpr const char* trueType = "truetype/noto/";
constexpr const char* openType = "opentype/noto/";
INSTANTIATE_TEST_SUITE_P(OfScripts, PainterFontsTest,
                         ::testing::Values(Script{"مرحبا يا صديقي", trueType, "NotoSansArabic",
                                                  "NotoNaskhArabic", ".ttf", "Noto Naskh Arabic"},
                                           Script{"שלום עולם", trueType, "NotoSansHebrew",
                                                  "NotoSerifHebrew", ".ttf", "Noto Serif Hebrew"},
                                           Script{"मेरे साथ चलो", trueType, "NotoSansDevanagari",
                                                  "NotoSerifDevanagari", ".ttf",
                                                  "Noto Serif Devanagari"},
                                           Script{"夜空に消える", openType, "NotoSansCJK",
                                                  "NotoSerifCJK", ".ttc", "Noto Serif CJK JP"}),
                         [](const auto& instance) { return std::string(instance.param.sans); });

TEST_P(PainterFontsTest, MediumIsTakenWhereItIs) {
  const Picture medium = with({sans("Regular"), sans("Bold")}, asMedium(sans("Bold")));
  EXPECT_EQ(medium, with({sans("Bold")}));
  EXPECT_NE(medium, with({sans("Regular")}));
}

TEST_P(PainterFontsTest, RegularStandsInForItNotBoldNorAnotherFamily) {
  const Picture regular = with({sans("Regular")});
  EXPECT_EQ(with({sans("Regular"), sans("Bold")}), regular);
  EXPECT_EQ(with({sans("Regular"), other("Bold")}, asMedium(other("Bold"))), regular);
}

TEST_P(PainterFontsTest, TheFamilyIsKeptWhereAnotherIsTheMachinesSansSerif) {
  EXPECT_EQ(with({sans("Regular"), other("Regular")}, asSansSerif(GetParam().otherFamily)),
            with({sans("Regular")}));
}

}  // namespace
}  // namespace vellora
