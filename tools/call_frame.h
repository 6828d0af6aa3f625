// The calling convention applied to a frame in memory: addresses for the arguments and results of a call.
#pragma once

#include <cstring>

#include "frame/convention.h"

namespace vorx {

// The parts of a frame, wherever its owner keeps them.
struct frame_parts {
  unsigned char* xmm;      // xmm0, xmm1, ..., 16 bytes each
  uint32_t* integers;      // eax, edx
  unsigned char* stack;    // from 4(%esp) at the entry on
  unsigned char* hidden;   // the hidden result area
  unsigned char* pointed;  // the vector behind the trailing pointer

  unsigned char* address(const placement& p) const {
    switch (p.place) {
      case where::xmm:
        return xmm + 16 * p.at;
      case where::stack:
        return stack + (p.at - 4);
      case where::hidden:
        return hidden + p.at;
      case where::pointer:
        return pointed;
      case where::eax:
      case where::edx_eax:
        return reinterpret_cast<unsigned char*>(integers);
      case where::nowhere:
        break;
    }
    return nullptr;
  }
  // The addresses that the caller passes on the stack: of the hidden area and of the trailing pointer's vector.
  void store_addresses(const layout& l) const {
    if (l.hidden_bytes != 0) std::memcpy(stack, &hidden, sizeof hidden);
    if (const placement& p = l.results[1]; p.place == where::pointer) std::memcpy(stack + (p.at - 4), &pointed, sizeof pointed);
  }
};

}  // namespace vorx
