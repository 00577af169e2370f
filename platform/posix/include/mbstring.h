// Texts in the narrow character set of the machine.
#pragma once

unsigned char* _mbstok(unsigned char* text, const unsigned char* delimiters);
