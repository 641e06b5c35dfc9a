// make_icons FOLDER: writes the icons of the program and of a setup file into the folders of an icon theme,
// as PNG of the usual sizes and as SVG.
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>

#include "host/CairoPictures.h"
#include "widgets/Mark.h"

namespace {

namespace fs = std::filesystem;

constexpr std::array<int, 9> Sides{16, 22, 24, 32, 48, 64, 128, 256, 512};
constexpr int SvgSide = 128;

constexpr vc::Colour Paper = vc::MakeColour(0xFB, 0xFC, 0xFD);
constexpr vc::Colour PaperEdge = vc::MakeColour(0x8A, 0x97, 0xA5);
constexpr vc::Colour Fold = vc::MakeColour(0xC9, 0xD2, 0xDB);

// A sheet of paper with a folded corner, so far inside its own edge. All in parts of the whole icon.
std::array<vc::Point, 5> Sheet(double side, double inset) {
  constexpr double left = 0.125, right = 0.875, folded = 0.25;
  const double near = left * side + inset, far = right * side - inset, cut = folded * side;
  return {{{near, inset}, {far - cut, inset}, {far, cut + inset}, {far, side - inset}, {near, side - inset}}};
}

void DrawSetupFile(vc::Surface& surface, int side) {
  constexpr double edge = 1.0 / 32.0;
  const double line = side * edge < 1.0 ? 1.0 : side * edge;
  surface.FillPolygon(Sheet(side, 0.0), PaperEdge);
  const auto paper = Sheet(side, line);
  surface.FillPolygon(paper, Paper);
  const std::array<vc::Point, 3> fold{{paper[1], {paper[1].x, paper[2].y}, paper[2]}};
  surface.FillPolygon(fold, Fold);
  const int mark = side * 5 / 8;
  vc::DrawMark(surface, {(side - mark) / 2, side * 5 / 16, mark, mark});
}

struct Icon {
  std::string folder, name;
  void (*draw)(vc::Surface& surface, int side);
};
const std::array<Icon, 2> Icons{{{"apps", "veltrana",
                                  [](vc::Surface& surface, int side) {
                                    vc::DrawMark(surface, {0, 0, side, side});
                                  }},
                                 {"mimetypes", "application-x-veltrana-setup", DrawSetupFile}}};

bool Write(const fs::path& path, const std::string& bytes) {
  std::error_code error;
  fs::create_directories(path.parent_path(), error);
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  file.close();
  if (file && !bytes.empty()) return true;
  std::cerr << "make_icons: " << path.string() << " could not be written\n";
  return false;
}

bool WriteIcon(const fs::path& root, const Icon& icon) {
  bool written = true;
  for (const int side : Sides) {
    const std::string size = std::to_string(side) + "x" + std::to_string(side);
    const std::string png =
        host::DrawIcon({side, side}, [&](vc::Surface& surface) { icon.draw(surface, side); });
    written = Write(root / size / icon.folder / (icon.name + ".png"), png) && written;
  }
  const std::string svg = host::CairoPictures().Draw(
      vc::PictureFormat::Svg, {SvgSide, SvgSide}, [&](vc::Surface& surface) { icon.draw(surface, SvgSide); });
  return Write(root / "scalable" / icon.folder / (icon.name + ".svg"), svg) && written;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "make_icons FOLDER\n";
    return 2;
  }
  bool written = true;
  for (const Icon& icon : Icons) written = WriteIcon(argv[1], icon) && written;
  return written ? 0 : 1;
}
