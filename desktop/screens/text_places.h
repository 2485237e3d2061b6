// Places in a text: the model counts characters, the toolkit counts the units of its own encoding and
// keeps one mark for the two that end a line.
#pragma once

#include <string>

namespace tarvik::desktop {

// Where the model's place stands in the widget, and back. A place behind the end is the end.
int InWidget(const std::string& text, int model_place);
int InModel(const std::string& text, int widget_place);

}  // namespace tarvik::desktop
