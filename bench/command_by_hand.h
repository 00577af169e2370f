#pragma once

#include <cstdint>

// Sends the frame of command 4 to a port of this machine.
void SendByHand(std::uint16_t port);
