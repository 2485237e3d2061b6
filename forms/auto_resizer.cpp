#include "forms/auto_resizer.h"

#include <algorithm>
#include <cmath>

#include "forms/form.h"

namespace tarvik::forms {

void AutoResizer::Design(int width, int height) {
  width_ = width;
  height_ = height;
  places_.clear();
  for (Control* control : Owner().Controls()) {
    places_.push_back({control, control->Left(), control->Top(), control->Width(), control->Height()});
  }
}

void AutoResizer::Fit(int width, int height, std::initializer_list<const Control*> but) {
  if (width_ <= 0 || height_ <= 0 || width <= 0 || height <= 0) return;
  auto across = [&](int value) { return static_cast<int>(std::lround(double(value) * width / width_)); };
  auto down = [&](int value) { return static_cast<int>(std::lround(double(value) * height / height_)); };
  for (const Place& place : places_) {
    if (std::find(but.begin(), but.end(), place.control) != but.end()) continue;
    place.control->Place(across(place.left), down(place.top), across(place.width), down(place.height));
  }
}

}  // namespace tarvik::forms
