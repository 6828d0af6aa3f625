#include "tools/ulp/call.h"

#include <xmmintrin.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "tools/call_frame.h"
#include "tools/invoke.h"

namespace vorx::ulp {

// enter(frame), cdecl. ebx survives the call by the convention, and carries the frame's address across it.
extern "C" [[gnu::naked]] void enter(call_frame*) {
  asm(R"(
    pushl %ebp
    movl %esp, %ebp
    pushl %ebx
    movl 8(%ebp), %ebx
    movl 76(%ebx), %ecx
    andl $-16, %esp
    subl %ecx, %esp
    testl %ecx, %ecx
    jz 2f
  1:
    movaps 64(%ebx,%ecx), %xmm0
    movaps %xmm0, -16(%esp,%ecx)
    subl $16, %ecx
    jnz 1b
  2:
    movl 64(%ebx), %eax
    movaps (%ebx), %xmm0
    movaps 16(%ebx), %xmm1
    movaps 32(%ebx), %xmm2
    movaps 48(%ebx), %xmm3
    call *72(%ebx)
    movl %eax, 64(%ebx)
    movl %edx, 68(%ebx)
    movaps %xmm0, (%ebx)
    movaps %xmm1, 16(%ebx)
    movaps %xmm2, 32(%ebx)
    movaps %xmm3, 48(%ebx)
    movl -4(%ebp), %ebx
    leave
    ret
  )");
}
static_assert(offsetof(call_frame, eax) == 64 && offsetof(call_frame, edx) == 68 && offsetof(call_frame, entry) == 72 &&
              offsetof(call_frame, stack_bytes) == 76 && offsetof(call_frame, stack) == 80);

caller::caller(const entry_point& e) {
  std::memset(&frame_, 0, sizeof frame_);
  frame_.entry = library_symbol(e.symbol());
  if (!frame_.entry) {
    std::fprintf(stderr, "ulp: the library has no %s\n", e.symbol().c_str());
    std::exit(2);
  }
  const layout l = e.where_things_are();
  const shape& form = e.of->form;
  frame_.stack_bytes = static_cast<uint32_t>(l.stack_bytes + 15) & ~15u;
  const frame_parts parts{frame_.xmm[0], &frame_.eax, frame_.stack, frame_.hidden, frame_.pointed_to};
  parts.store_addresses(l);
  for (int a = 0; a < form.argument_count(); a++)
    argument_[a] = {parts.address(l.arguments[a]), lane_bytes(form.arguments[a], e.type)};
  for (int r = 0; r < form.result_count(); r++) result_[r] = {parts.address(l.results[r]), lane_bytes(form.results[r], e.type)};
}

uint32_t caller::mxcsr = 0x1f80;

void caller::operator()() {
  if (mxcsr == 0x1f80) return enter(&frame_);
  _mm_setcsr(mxcsr);
  enter(&frame_);
  _mm_setcsr(0x1f80);
}

}  // namespace vorx::ulp
