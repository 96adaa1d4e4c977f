#pragma once

#include <string>

/// Colours and type of pictures: light, dark where the reader prefers it, light on paper. Cis is
/// orange and trans blue, a pair that all common forms of colour blindness tell apart; side and
/// words say the same.
std::string pictureStyle();

/// Everything above and the layout of the page.
std::string pageStyle();
