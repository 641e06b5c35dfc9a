// A form with a table, as panels declare it: controls in arrays, a frame a row.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "text/Convert.h"
#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"

namespace support {

// A slider with its number in whole units.
struct Numbered {
  Numbered(vc::Place place, const std::string& caption, const std::string& name, const std::string& unit,
           double highest, int index)
      : slider(place, "sldr" + name, caption, index), text(place, "txt" + name, caption, index) {
    text.shows = &slider;
    text.unit = unit;
    slider.SetRange(0, highest);
    slider.changed = [this] { text.SetText(vc::ShortestText(slider.Position())); };
    text.SetText("0");
  }
  vc::Slider slider;
  vc::TextBox text;
};

struct RowForm {
  struct Row {
    Row(vc::Frame& table, int index)
        : frame(table, "fraControl", "Notch " + std::to_string(index + 1), vc::Arrangement::Rows, index),
          freq(frame, "Freq.", "Freq", "Hz", 8000, index),
          width(frame, "Width", "Width", "Hz", 200, index) {
      freq.slider.SetPosition(450.0 * index);
      width.slider.SetPosition(10 + index);
    }
    vc::Frame frame;
    Numbered freq, width;
  };
  vc::Form form{"RowForm", "Multiple Notch (Filter 1)"};
  vc::Frame fraRows{form, "fraRows", "Notches", vc::Arrangement::Table};
  std::vector<std::unique_ptr<Row>> rows;
  std::unique_ptr<Numbered> atten;
  std::vector<std::unique_ptr<vc::GraphicButton>> buttons;
  std::unique_ptr<vc::Button> btnOK;

  RowForm() {
    constexpr int count = 16;
    fraRows.headings = {"", "Freq.", "Width"};
    for (int i = 0; i < count; ++i) rows.push_back(std::make_unique<Row>(fraRows, i));
    atten = std::make_unique<Numbered>(form, "Attenuation", "Atten", "%", 100, vc::NoIndex);
    for (const char* name : {"Build", "Destroy"}) {
      buttons.push_back(std::make_unique<vc::GraphicButton>(form, std::string("btn") + name, name,
                                                            vc::GraphicButton::Style::Push));
    }
    btnOK = std::make_unique<vc::Button>(form, "btnOK", "OK");
  }
};

}  // namespace support
