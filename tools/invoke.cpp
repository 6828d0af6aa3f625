#include "tools/invoke.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/call_frame.h"

namespace vorx {
namespace {

constexpr int image_bytes = 512;  // room for the largest stack image: a hidden slot and three double16 arguments
static_assert(image_bytes >= 16 + 3 * 128 + 4);

// 64 canary bytes on either side of an output, and the room between them.
struct guarded_output {
  alignas(16) unsigned char bytes[64 + 16 + 256 + 64];
  unsigned char* start(int offset) { return bytes + 64 + offset; }
  void prepare() { std::memset(bytes, 0xc3, sizeof bytes); }
  bool untouched_but(const unsigned char* from, int count) const {
    for (const unsigned char& b : bytes)
      if ((&b < from || &b >= from + count) && b != 0xc3) return false;
    return true;
  }
};

}  // namespace

// call_machine(state, entry, image, misalignment), cdecl: loads all registers from `state`, puts the stack image in place, calls,
// and writes all registers back. It finds its way back by what it put behind the image.
extern "C" [[gnu::naked]] void call_machine(machine_state*, const void*, const void*, uint32_t) {
  asm(R"(
    pushl %%ebp
    movl %%esp, %%ebp
    pushl %%ebx
    pushl %%esi
    pushl %%edi
    subl %0 + 16, %%esp
    andl $-16, %%esp
    subl 20(%%ebp), %%esp
    movl 16(%%ebp), %%esi
    movl %%esp, %%edi
    movl %0 / 4, %%ecx
    cld
    rep movsl
    movl 8(%%ebp), %%eax
    movl %%eax, %c0(%%esp)
    movl %%ebp, %c0 + 4(%%esp)
    movl 12(%%ebp), %%ecx
    movl %%ecx, %c0 + 8(%%esp)
    movl %%esp, 156(%%eax)
    ldmxcsr 160(%%eax)
    movaps (%%eax), %%xmm0
    movaps 16(%%eax), %%xmm1
    movaps 32(%%eax), %%xmm2
    movaps 48(%%eax), %%xmm3
    movaps 64(%%eax), %%xmm4
    movaps 80(%%eax), %%xmm5
    movaps 96(%%eax), %%xmm6
    movaps 112(%%eax), %%xmm7
    movl 132(%%eax), %%edx
    movl 136(%%eax), %%ecx
    movl 140(%%eax), %%ebx
    movl 144(%%eax), %%esi
    movl 148(%%eax), %%edi
    movl 152(%%eax), %%ebp
    movl 128(%%eax), %%eax
    call *%c0 + 8(%%esp)
    pushl %%eax
    movl %c0 + 4(%%esp), %%eax
    movaps %%xmm0, (%%eax)
    movaps %%xmm1, 16(%%eax)
    movaps %%xmm2, 32(%%eax)
    movaps %%xmm3, 48(%%eax)
    movl %%edx, 132(%%eax)
    movl %%ecx, 136(%%eax)
    movl %%ebx, 140(%%eax)
    movl %%esi, 144(%%eax)
    movl %%edi, 148(%%eax)
    movl %%ebp, 152(%%eax)
    popl 128(%%eax)
    stmxcsr 160(%%eax)
    subl %%esp, 156(%%eax)
    movl %c0 + 4(%%esp), %%ebp
    leal -12(%%ebp), %%esp
    movl $0x1f80, -16(%%ebp)
    ldmxcsr -16(%%ebp)
    popl %%edi
    popl %%esi
    popl %%ebx
    popl %%ebp
    ret
  )" ::"i"(image_bytes));
}
static_assert(sizeof(machine_state) % 8 == 0 && image_bytes % 8 == 0);
static_assert(offsetof(machine_state, eax) == 128 && offsetof(machine_state, edx) == 132 && offsetof(machine_state, ecx) == 136 &&
              offsetof(machine_state, ebp) == 152 && offsetof(machine_state, esp) == 156 &&
              offsetof(machine_state, mxcsr) == 160);

invoker::invoker(const entry_point& e, const void* address) : entry_(e), layout_(e.where_things_are()), address_(address) {}

std::string invoker::operator()(const void* const* arguments, void* const* results, const call_options& options) {
  const shape& form = entry_.of->form;
  alignas(16) unsigned char image[image_bytes];
  auto fill_with_garbage = [&](void* p, size_t bytes) {
    for (size_t i = 0; i + 8 <= bytes; i += 8) std::memcpy(static_cast<unsigned char*>(p) + i, &options.garbage, 8);
  };
  fill_with_garbage(image, sizeof image);
  fill_with_garbage(&state_, sizeof state_);
  state_.ebx = 0xb0b0b0b1, state_.esi = 0x51515152, state_.edi = 0xd1d1d1d2, state_.ebp = 0xebebebec;
  const machine_state before = state_;
  state_.mxcsr = options.mxcsr;

  guarded_output hidden, pointed;
  unsigned char* area = hidden.start(options.hidden_offset);
  unsigned char* target = pointed.start(0);
  hidden.prepare();
  pointed.prepare();
  const frame_parts frame{state_.xmm[0], &state_.eax, image, area, target};
  frame.store_addresses(layout_);
  auto bytes_of = [&](kind k) { return static_cast<size_t>(entry_.width * lane_bytes(k, entry_.type)); };
  for (int a = 0; a < form.argument_count(); a++)
    std::memcpy(frame.address(layout_.arguments[a]), arguments[a], bytes_of(form.arguments[a]));

  call_machine(&state_, address_, image, static_cast<uint32_t>(options.misalignment));

  for (int r = 0; r < form.result_count(); r++) {
    const size_t bytes = bytes_of(form.results[r]);
    std::memcpy(results[r], frame.address(layout_.results[r]), bytes);
    if (layout_.results[r].place == where::pointer && !pointed.untouched_but(target, static_cast<int>(bytes)))
      return "writes beside the vector that its pointer addresses";
  }
  if (layout_.hidden_bytes != 0) {
    if (!hidden.untouched_but(area, layout_.hidden_bytes)) return "writes beside the hidden result area";
    if (state_.eax != reinterpret_cast<uintptr_t>(area)) return "eax does not hold the address of the result area";
  }
  if (state_.esp != 0) return "esp changed";
  if (state_.ebx != before.ebx) return "ebx changed";
  if (state_.esi != before.esi) return "esi changed";
  if (state_.edi != before.edi) return "edi changed";
  if (state_.ebp != before.ebp) return "ebp changed";
  if ((state_.mxcsr & ~0x3fu) != (options.mxcsr & ~0x3fu)) return "the SSE control bits changed";
  return {};
}

const void* library_symbol(const std::string& name) {
  static void* library = [] {
    const char* path = std::getenv("VORX_LIBRARY");
    void* handle = dlopen(path ? path : VORX_DEFAULT_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
      std::fprintf(stderr, "%s\n", dlerror());
      std::exit(2);
    }
    return handle;
  }();
  return dlsym(library, name.c_str());
}

}  // namespace vorx
