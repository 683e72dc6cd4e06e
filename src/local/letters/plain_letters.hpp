#pragma once

#include <string>

/// The entry of the module "plain_letters.so". False when its library lacks the tables.
extern "C" bool twk_plain_letters(const std::string& text, std::string& plain);
