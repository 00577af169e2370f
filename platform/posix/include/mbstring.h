// Texts in the narrow character set of the machine.
#pragma once

// The copy is released with free.
char* _strdup(const char* text);

unsigned char* _mbstok(unsigned char* text, const unsigned char* delimiters);
