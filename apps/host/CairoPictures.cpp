#include "host/CairoPictures.h"

#include <memory>

#include <cairo/cairo-svg.h>
#include <cairo/cairo.h>

#include "host/CairoSurface.h"

namespace host {
namespace {

constexpr int Fineness = 2;  // pixels of a file for each of the surface

struct Destroy {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Canvas = std::unique_ptr<cairo_surface_t, Destroy>;

cairo_status_t Append(void* bytes, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

bool DrawOn(const Canvas& canvas, double fineness, const vc::Drawing& drawing) {
  const std::unique_ptr<cairo_t, Destroy> context(cairo_create(canvas.get()));
  cairo_scale(context.get(), fineness, fineness);
  CairoSurface surface(context.get());
  drawing(surface);
  return cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
}

std::string DrawPng(cairo_format_t format, int fineness, const vc::Size& size, const vc::Drawing& drawing) {
  const Canvas canvas(cairo_image_surface_create(format, fineness * size.width, fineness * size.height));
  std::string bytes;
  const bool whole = DrawOn(canvas, fineness, drawing) &&
                     cairo_surface_write_to_png_stream(canvas.get(), Append, &bytes) == CAIRO_STATUS_SUCCESS;
  return whole ? bytes : std::string();
}

std::string DrawSvg(const vc::Size& size, const vc::Drawing& drawing) {
  std::string bytes;
  const Canvas canvas(cairo_svg_surface_create_for_stream(Append, &bytes, size.width, size.height));
  cairo_svg_surface_set_document_unit(canvas.get(), CAIRO_SVG_UNIT_PX);
  const bool drawn = DrawOn(canvas, 1.0, drawing);
  cairo_surface_finish(canvas.get());
  const bool whole = drawn && cairo_surface_status(canvas.get()) == CAIRO_STATUS_SUCCESS;
  return whole ? bytes : std::string();
}

}  // namespace

std::string CairoPictures::Draw(vc::PictureFormat format, const vc::Size& size, const vc::Drawing& drawing) {
  return format == vc::PictureFormat::Png ? DrawPng(CAIRO_FORMAT_RGB24, Fineness, size, drawing)
                                          : DrawSvg(size, drawing);
}

bool CairoPictures::Copy(const vc::Size& /*size*/, const vc::Drawing& /*drawing*/) { return false; }

std::string DrawIcon(const vc::Size& size, const vc::Drawing& drawing) {
  return DrawPng(CAIRO_FORMAT_ARGB32, 1, size, drawing);
}

}  // namespace host
