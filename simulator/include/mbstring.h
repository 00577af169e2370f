// Texts in the narrow character set.
#pragma once

unsigned char* _mbstok(unsigned char* text, const unsigned char* delimiters);
