#pragma once

/// Chinese words of two signs that are common in titles.
namespace quilmora::commonWords
{

/// Whether the two signs form one of them, so that a line should not end between.
bool contains(char32_t first, char32_t second);

} // namespace quilmora::commonWords
