#include "desktop/screens/text_places.h"

#include <QString>

namespace tarvik::desktop {

namespace {

constexpr char32_t kLastOfOneUnit = 0xFFFF;

// Walks both countings side by side until `stop` says so; gives the counts there.
template <class Stop>
std::pair<int, int> Walk(const std::string& text, Stop&& stop) {
  const std::u32string characters = QString::fromStdString(text).toStdU32String();
  int model = 0;
  int widget = 0;
  for (std::size_t at = 0; at < characters.size() && !stop(model, widget); ++at) {
    ++model;
    const bool half_of_an_end =
        characters[at] == U'\r' && at + 1 < characters.size() && characters[at + 1] == U'\n';
    if (!half_of_an_end) widget += characters[at] > kLastOfOneUnit ? 2 : 1;
  }
  return {model, widget};
}

}  // namespace

int InWidget(const std::string& text, int model_place) {
  return Walk(text, [&](int model, int) { return model >= model_place; }).second;
}

int InModel(const std::string& text, int widget_place) {
  return Walk(text, [&](int, int widget) { return widget >= widget_place; }).first;
}

}  // namespace tarvik::desktop
