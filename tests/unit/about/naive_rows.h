#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "about/text_rows.h"

/// Texts broken into rows as the rules read, character by character.
namespace zepkit10::naive {

std::u16string ShownText(std::u16string_view text);

/// The rows of a shown text where `width_of` is a character's width and no row is wider than
/// `limit`, unless it is a single character.
std::vector<TextRow> Rows(std::u16string_view text, int limit, int (*width_of)(char16_t));

}  // namespace zepkit10::naive
