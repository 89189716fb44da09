#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "util/delimited_list.h"

/// Delimited lists as their rules read, character by character, with no thought of speed.
namespace zepkit10::naive {

std::vector<std::u16string> Split(std::u16string_view text, const ListFormat& format);
std::u16string Join(const std::vector<std::u16string>& items, const ListFormat& format);

/// True where joining these items and splitting the result gives them back: quotes and delimiter
/// are single characters that differ, no item holds a quote, and the last one is not empty.
bool SurvivesRoundTrip(const std::vector<std::u16string>& items, const ListFormat& format);

/// What the library and the naive way disagree about; empty where they agree.
std::string Difference(std::u16string_view text, const ListFormat& format);

}  // namespace zepkit10::naive
