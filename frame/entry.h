// From a kernel to an entry point: where the arguments of a width are (convention.h), the kernel's path on each register, the
// lane test, and the cold part that recomputes flagged lanes, or takes all lanes through the large path.
#pragma once

#include <tuple>
#include <utility>

#include "frame/kernel.h"

namespace vorx {

// Registers as they arrive and leave: a homogeneous aggregate of N registers is xmm0 up to xmm[N-1].
template <int N>
struct register_file {
  __m128 xmm[N];
};

// What the fourth lane of a three-lane floating argument is replaced by: an ordinary argument that no lane test flags.
enum class fill { three_quarters, one, two };

template <fill F, class E>
struct fill_constants {
  static constexpr typename E::scalar value = F == fill::three_quarters ? 0.75 : F == fill::one ? 1.0 : 2.0;
  static constexpr auto integer = std::bit_cast<typename E::integer>(value);
  std::conditional_t<E::lanes == 4, rep32, rep64> real = [] {
    if constexpr (E::lanes == 4) return bits32(integer);
    if constexpr (E::lanes == 2) return bits64(integer);
  }();
};
struct integer_fill_constants {
  rep32 one_i32 = bits32(1);
  rep64 one_i64 = bits64(1);
};

// What the exported symbol does before the body: nothing, or one instruction that brings into ecx what the body needs.
enum prologue : int { no_prologue = 0, address_of_stack = 1, eax_to_ecx = 2 };

// Memory and registers of one step, whatever their element type.
template <class T>
VORX_INLINE T from_register(__m128 a) {
  return std::bit_cast<T>(a);
}
template <class T>
VORX_INLINE __m128 to_register(T a) {
  return std::bit_cast<__m128>(a);
}
VORX_INLINE auto& first_register(auto& a) { return a.v; }
VORX_INLINE auto& first_register(i64x4& a) { return a.low.v; }
template <class A, class B>
VORX_INLINE auto& first_register(two<A, B>& a) {
  return a.first.v;
}
VORX_INLINE __m128& slot(char* p, int i) { return reinterpret_cast<__m128*>(p)[i]; }
VORX_INLINE const __m128& slot(const char* p, int i) { return reinterpret_cast<const __m128*>(p)[i]; }

// One copy of the rare-case routine for all widths.
template <class K, class... Pointers>
[[gnu::noinline]] void rare_case(Pointers... lane) {
  if constexpr (has_lane_test<K>) K::rare(lane...);
}

// The entry point of kernel K with shape S on W lanes.
template <shape S, class K, int W, fill F>
struct entry {
  using E = typename K::type;
  using kernel_type = K;
  using constants = typename K::constants;
  static constexpr layout L = place(S, E::id, W);
  static constexpr int steps = registers(kind::real, E::id, W);
  static constexpr int lanes = steps * E::lanes;  // that the registers hold; widths 1 and 2 use fewer

  static constexpr bool in_memory = L.hidden_bytes != 0;  // all arguments and all results

  static constexpr prologue front = L.arguments[0].place == where::eax ? eax_to_ecx
                                    : L.stack_bytes > 0                ? address_of_stack
                                                                       : no_prologue;

  // The body's parameters: argument registers (one that is never read where there are none), and ecx.
  using in = register_file<L.argument_registers == 0 ? 1 : L.argument_registers>;
  using word = std::conditional_t<front == eax_to_ecx, int32_t, const char*>;

  static consteval auto out_type() {
    if constexpr (L.results[0].place == where::eax) return std::type_identity<int32_t>{};
    if constexpr (L.results[0].place == where::edx_eax) return std::type_identity<int64_t>{};
    if constexpr (L.results[0].place == where::hidden) return std::type_identity<char*>{};
    if constexpr (L.results[0].place == where::xmm) return std::type_identity<register_file<L.result_registers>>{};
  }
  using out = typename decltype(out_type())::type;

  template <int A>
  using argument = step<S.arguments[A], E>;
  template <int R>
  using result = step<S.results[R], E>;

  // 32-bit integers beside doubles: a register holds those of two steps.
  template <kind Kind>
  static constexpr bool two_steps_to_a_register = E::lanes == 2 && lane_bytes(Kind, E::id) == 4;

  // f(i) for every step: unrolled, i a compile-time constant, unless everything is in memory.
  template <class Function>
  VORX_INLINE static void each_step(Function f) {
    if constexpr (in_memory) {
#pragma clang loop unroll(disable)
      for (int i = 0; i < steps; i++) f(i);
    } else {
      [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline)) {
        (f(std::integral_constant<int, i>{}), ...);
      }
      (std::make_integer_sequence<int, steps>{});
    }
  }

  // f(argument 0, argument 1, ...) of step i.
  template <class Function>
  VORX_INLINE static auto with_arguments(const in& r, word w, auto i, Function f) {
    if constexpr (S.argument_count() == 1) return f(load<0>(r, w, i));
    if constexpr (S.argument_count() == 2) return f(load<0>(r, w, i), load<1>(r, w, i));
    if constexpr (S.argument_count() == 3) return f(load<0>(r, w, i), load<1>(r, w, i), load<2>(r, w, i));
  }

  // ---- arguments ----

  template <int A>
  VORX_INLINE static typename argument<A>::type load(const in& r, word w, auto i) {
    using T = typename argument<A>::type;
    T x;
    if constexpr (W == 1 && is_integer(S.arguments[A])) {
      __m128i n = scalar_integer<A>(w);
      if constexpr (sizeof(T) == 32)
        x = {{n}, {n}};
      else
        x = {n};
    } else if constexpr (two_steps_to_a_register<S.arguments[A]>) {
      if constexpr (L.arguments[A].place == where::stack)
        x = {_mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(w + (L.arguments[A].at - 4) + 8 * i))};
      else
        x = from_register<T>(argument_register<A>(r, w, i / 2));
      if (L.arguments[A].place == where::xmm && i % 2) x = upper_half(x);
    } else if constexpr (sizeof(T) == 32) {  // two registers to a step, where the width has so many
      x.low = from_register<i64x2>(argument_register<A>(r, w, 2 * i));
      x.high = x.low;
      if constexpr (L.arguments[A].count > 1) x.high = from_register<i64x2>(argument_register<A>(r, w, 2 * i + 1));
    } else {
      x = from_register<T>(argument_register<A>(r, w, i));
    }
    return x;
  }

  template <int A>
  VORX_INLINE static __m128 argument_register(const in& r, word w, int i) {
    constexpr placement p = L.arguments[A];
    if constexpr (p.place == where::xmm) return r.xmm[p.at + i];
    if constexpr (p.place == where::stack) {
      static_assert(W != 3 || S.arguments[A] == kind::real);
      __m128 a = slot(w + (p.at - 4), i);
      return W == 3 && i == p.count - 1 ? fill_fourth<S.arguments[A]>(a) : a;
    }
  }

  template <int A>
  VORX_INLINE static __m128i scalar_integer(word w) {
    constexpr placement p = L.arguments[A];
    if constexpr (p.place == where::eax)
      return _mm_cvtsi32_si128(w);
    else if constexpr (sizeof(typename argument<A>::lane) == 4)
      return _mm_cvtsi32_si128(*reinterpret_cast<const int32_t*>(w + (p.at - 4)));
    else
      return two_words(reinterpret_cast<const int32_t*>(w + (p.at - 4)));
  }

  // A 64-bit integer that the caller has pushed as two words: one load of both would wait until both stores have left the
  // processor's store buffer (a conversion takes 35 cycles instead of 8). In assembly, for the compiler would join the loads.
  VORX_INLINE static __m128i two_words(const int32_t* p) {
    __m128i x = _mm_cvtsi32_si128(p[0]);
    asm("pinsrd $1, %1, %0" : "+x"(x) : "m"(p[1]));
    return x;
  }

  // The last register of a three-lane argument with an ordinary fourth lane: the fill value, the integer 1, or 0 for codes.
  template <kind Kind>
  VORX_INLINE static __m128 fill_fourth(__m128 x) {
    constexpr bool half = lane_bytes(Kind, E::id) == 8;  // the lane is the upper half of the register, or a quarter
    auto blend = [x](__m128 with) {
      return half ? to_register(_mm_blend_pd(from_register<__m128d>(x), from_register<__m128d>(with), 2))
                  : _mm_blend_ps(x, with, 8);
    };
    if constexpr (Kind == kind::real)
      return blend(to_register(typename E::vector(constant_pool<fill_constants<F, E>>.real)));
    else if constexpr (Kind == kind::bits)
      return blend(_mm_setzero_ps());
    else if constexpr (half)
      return blend(to_register(i64x2(constant_pool<integer_fill_constants>.one_i64)));
    else
      return blend(to_register(i32x4(constant_pool<integer_fill_constants>.one_i32)));
  }

  // The argument registers, the fourth of three lanes filled. The body does this before anything else.
  VORX_INLINE static in filled(in r) {
    fill_register<0>(r);
    if constexpr (S.argument_count() > 1) fill_register<1>(r);
    if constexpr (S.argument_count() > 2) fill_register<2>(r);
    return r;
  }
  template <int A>
  VORX_INLINE static void fill_register(in& r) {
    constexpr placement p = L.arguments[A];
    if constexpr (W == 3 && p.place == where::xmm) {
      __m128& last = r.xmm[p.at + p.count - 1];
      last = fill_fourth<S.arguments[A]>(last);
    }
  }

  // ---- results ----

  // A body's results in the making, and where the one that leaves through a pointer goes.
  struct sink {
    out o;
    char* pointer;
  };
  VORX_INLINE static sink start([[maybe_unused]] word w) {
    sink s{};
    if constexpr (L.hidden_bytes != 0) s.o = *reinterpret_cast<char* const*>(w);
    if constexpr (S.has_pointer()) s.pointer = *reinterpret_cast<char* const*>(w + (L.results[1].at - 4));
    return s;
  }

  template <int R, class T>
  VORX_INLINE static void store(sink& s, auto i, T value) {
    constexpr placement p = L.results[R];
    out& o = s.o;
    if constexpr (p.place == where::eax) {
      o = _mm_cvtsi128_si32(value.v);
    } else if constexpr (p.place == where::edx_eax) {
      __m128i v = first_register(value);
      o = static_cast<int64_t>(static_cast<uint64_t>(static_cast<uint32_t>(_mm_extract_epi32(v, 1))) << 32 |
                               static_cast<uint32_t>(_mm_cvtsi128_si32(v)));
    } else if constexpr (p.place == where::xmm) {
      if constexpr (two_steps_to_a_register<S.results[R]>) {
        __m128& half = o.xmm[p.at + i / 2];
        half = to_register(i % 2 ? join(from_register<i32x4>(half), value) : value);
      } else if constexpr (sizeof(T) == 32) {
        o.xmm[p.at + 2 * i] = to_register(value.low);
        if constexpr (p.count > 1) o.xmm[p.at + 2 * i + 1] = to_register(value.high);
      } else {
        o.xmm[p.at + i] = to_register(value);
      }
    } else if constexpr (p.place == where::hidden) {  // aligned to 8 bytes only
      char* area = o + p.at + sizeof(T) * i;
      if constexpr (sizeof(T) == 32) {
        _mm_storeu_ps(reinterpret_cast<float*>(area), to_register(value.low));
        _mm_storeu_ps(reinterpret_cast<float*>(area + 16), to_register(value.high));
      } else {
        _mm_storeu_ps(reinterpret_cast<float*>(area), to_register(value));
      }
    } else {
      constexpr int step_bytes = E::lanes * sizeof(typename result<R>::lane);
      constexpr int bytes = W * sizeof(typename result<R>::lane);
      store_bytes<bytes, step_bytes>(s.pointer, i, to_register(value));
    }
  }

  // Step i of a vector of so many bytes in memory; not a byte more, for a vector of three lanes or less may end where the
  // caller's memory ends.
  template <int bytes, int step_bytes>
  VORX_INLINE static void store_bytes(char* vector, auto i, __m128 value) {
    char* p = vector + step_bytes * i;
    auto integers = std::bit_cast<__m128i>(value);
    if (bytes - step_bytes * i >= step_bytes) {
      if constexpr (step_bytes == 16)
        slot(p, 0) = value;
      else
        _mm_storel_epi64(reinterpret_cast<__m128i_u*>(p), integers);
    } else if (bytes % step_bytes == 4) {
      *reinterpret_cast<int32_t*>(p) = _mm_cvtsi128_si32(integers);
    } else {
      _mm_storel_epi64(reinterpret_cast<__m128i_u*>(p), integers);
      if (bytes % step_bytes == 12) *reinterpret_cast<int32_t*>(p + 8) = _mm_extract_epi32(integers, 2);
    }
  }

  template <class T>
  VORX_INLINE static void store_results(sink& s, auto i, T value) {
    if constexpr (S.result_count() == 1) {
      store<0>(s, i, value);
    } else {
      store<0>(s, i, value.first);
      store<1>(s, i, value.second);
    }
  }

  // ---- the hot part ----

  // The address of the kernel's constants.
  VORX_INLINE static const constants* address_of_constants() {
    if constexpr (std::is_empty_v<constants>) return nullptr;
    return hide(&constant_pool<constants>);
  }

  VORX_INLINE static auto on_path(const constants& k, auto... x) {
    if constexpr (W <= 2 && has_lower_half<K>)
      return K::lower_half(x..., k);
    else
      return K::path(x..., k);
  }

  // The path on every step. The barrier behind each step keeps the next one from mingling with it, so that each has all the
  // registers that hold no argument or result.
  VORX_INLINE static out compute(const in& r, word w, const constants* k) {
    sink s = start(w);
    each_step([&](auto i) __attribute__((always_inline)) {
      auto value = with_arguments(r, w, i, [k](auto... x) { return on_path(*k, x...); });
      if constexpr (!std::is_empty_v<constants>)
        if (in_memory || i + 1 < steps) asm volatile("" : "+r"(k), "+x"(first_register(value)));
      store_results(s, i, value);
    });
    return s.o;
  }

  // Whether the cold part must run: a lane that exists is large or, in kernels of one path, special. The barrier keeps the tests
  // of the registers apart, so that none is spilled; it leaves its address of the constants in k, so that there is one in a
  // register and not two.
  static constexpr bool has_cold_part = has_large_path<K> || has_lane_test<K>;
  VORX_INLINE static i32x4 leaving_lanes(const constants& k, auto... x) {
    if constexpr (has_large_path<K>)
      return K::large(x..., k);
    else
      return K::special(x..., k);
  }
  VORX_INLINE static bool leaves_path(const in& r, word w, const constants*& k) {
    if constexpr (always_special<K>) return true;
    i32x4 flags = {_mm_setzero_si128()};
    each_step([&](auto i) __attribute__((always_inline)) {
      flags = flags | with_arguments(r, w, i, [&k](auto... x) { return leaving_lanes(*k, x...); });
      if constexpr (!std::is_empty_v<constants> && steps > 1) asm volatile("" : "+r"(k), "+x"(flags.v));
    });
    return any_lane(flags);
  }

  // The same with the path, step by step, for kernels whose test needs what the path computes: in one step the compiler joins
  // both by itself where nothing in them is opaque to it. A kernel in two halves is left between them there, with nothing but the
  // arguments in registers.
  static constexpr bool exit_between_halves = steps == 1 && in_two_halves<K>;
  static constexpr bool tests_with_path = exit_between_halves || (steps > 1 && has_test_on_path<K>);
  // Such kernels spill, but for those of floats that are left between their halves. Without this the compiler leaves the frame as
  // the caller's stack is, and every fourth slot crosses a line.
  static constexpr bool aligns_frame = has_test_on_path<K> && !(exit_between_halves && E::lanes == 4);
  VORX_INLINE static void align_frame() {
    alignas(16) char slot[16];
    asm volatile("" : "=m"(slot));
  }
  VORX_INLINE static bool compute_and_test(const in& r, word w, const constants* k, out& o) {
    sink s = start(w);
    if constexpr (exit_between_halves) {
      constexpr std::integral_constant<int, 0> step;
      auto halfway = with_arguments(r, w, step, [k](auto... x) { return K::first_half(x..., *k); });
      if (any_lane(halfway.flags)) return true;
      store_results(s, step, K::second_half(halfway, *k));
      o = s.o;
      return false;
    }
    i32x4 flags = {_mm_setzero_si128()};
    each_step([&](auto i) __attribute__((always_inline)) {
      auto value = [&]() __attribute__((always_inline)) {
        if constexpr (in_two_halves<K>) {
          auto halfway = with_arguments(r, w, i, [k](auto... x) { return K::first_half(x..., *k); });
          flags = flags | halfway.flags;
          return K::second_half(halfway, *k);
        } else {
          flags = flags | with_arguments(r, w, i, [k](auto... x) { return leaving_lanes(*k, x...); });
          return with_arguments(r, w, i, [k](auto... x) { return on_path(*k, x...); });
        }
      }
      ();
      asm volatile("" : "+r"(k), "+x"(first_register(value)), "+x"(flags.v));
      store_results(s, i, value);
    });
    o = s.o;
    return mask_of(flags) != 0;
  }

  // One step: whether a lane is flagged that exists.
  VORX_INLINE static bool any_lane(i32x4 flags) { return (mask_of(flags) & ((1 << (W < E::lanes ? W : E::lanes)) - 1)) != 0; }
  // Bit i for lane i of a step that is flagged.
  VORX_INLINE static unsigned mask_of(i32x4 flags) {
    return static_cast<unsigned>(E::lanes == 4 ? sign_mask(as_float(flags)) : sign_mask(as_float(as_i64(flags))));
  }

  // ---- the cold part ----

  // What the cold part is given in ecx: where nothing is on the stack, whatever is there, so that the body has the register.
  VORX_INLINE static word forward(word w) {
    if constexpr (front == no_prologue) asm("" : "=r"(w));
    return w;
  }

  // Lane arrays of an argument or result: what the rare-case routine is given pointers into.
  template <class Step>
  struct alignas(16) lane_array {
    typename Step::lane lane[lanes];
    VORX_INLINE lane_array() {}  // keeps std::tuple from clearing it
    static constexpr int step_bytes = E::lanes * sizeof(typename Step::lane);
    VORX_INLINE void put(int i, typename Step::type x) {
      asm("" : "+x"(first_register(x)));  // keeps a loop of these from becoming a block copy, which is slow, or a call of memcpy
      char* p = reinterpret_cast<char*>(lane) + step_bytes * i;
      if constexpr (step_bytes == sizeof(x))
        *reinterpret_cast<typename Step::type*>(p) = x;
      else
        _mm_storel_epi64(reinterpret_cast<__m128i_u*>(p), std::bit_cast<__m128i>(x));
    }
    VORX_INLINE typename Step::type get(int i) const {
      const char* p = reinterpret_cast<const char*>(lane) + step_bytes * i;
      if constexpr (step_bytes == sizeof(typename Step::type))
        return *reinterpret_cast<const typename Step::type*>(p);
      else
        return {_mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(p))};
    }
  };
  template <template <int> class Of, int... i>
  static std::tuple<lane_array<Of<i>>...> lane_arrays(std::integer_sequence<int, i...>);
  using argument_arrays = decltype(lane_arrays<argument>(std::make_integer_sequence<int, S.argument_count()>{}));
  using result_arrays = decltype(lane_arrays<result>(std::make_integer_sequence<int, S.result_count()>{}));

  VORX_INLINE static auto path_when_cold(const constants& k, auto... x) {
    if constexpr (has_large_path<K>)
      return K::large_path(x...);
    else
      return on_path(k, x...);
  }

  // The path, or the large path where there is one, on every lane; then the rare-case routine on each special lane that exists.
  VORX_INLINE static out recompute(const in& r, word w) {
    argument_arrays arguments;
    result_arrays results;
    each_step([&](auto i) {
      with_arguments(r, w, i, [&](auto... x) { std::apply([&](auto&... array) { (array.put(i, x), ...); }, arguments); });
    });

    auto rare_lane = [&](int i) {
      std::apply([&](const auto&... x) { std::apply([&](auto&... y) { rare_case<K>(&x.lane[i]..., &y.lane[i]...); }, results); },
                 arguments);
    };
    if constexpr (always_special<K>) {
      for (int i = 0; i < W; i++) rare_lane(i);
    } else {
      const constants& k = *address_of_constants();
      unsigned mask = 0;
      for (int i = 0; i < steps; i++) {
        std::apply(
            [&](const auto&... x) {
              auto value = [&] {
                if constexpr (in_two_halves<K> && !has_large_path<K>) {
                  auto halfway = K::first_half(x.get(i)..., k);
                  mask |= mask_of(halfway.flags) << E::lanes * i;
                  return K::second_half(halfway, k);
                } else {
                  if constexpr (has_lane_test<K>) mask |= mask_of(K::special(x.get(i)..., k)) << E::lanes * i;
                  return path_when_cold(k, x.get(i)...);
                }
              }();
              if constexpr (S.result_count() == 1) {
                std::get<0>(results).put(i, value);
              } else {
                std::get<0>(results).put(i, value.first);
                std::get<1>(results).put(i, value.second);
              }
            },
            arguments);
      }
      if (W < E::lanes) mask &= (1u << W) - 1;
      if constexpr (has_lane_test<K>)
        for (; mask != 0; mask &= mask - 1) rare_lane(std::countr_zero(mask));
    }

    sink s = start(w);
    each_step([&](auto i) {
      asm volatile("" ::: "memory");  // or the compiler makes this a call of memcpy, which the library does not have
      store<0>(s, i, std::get<0>(results).get(i));
      if constexpr (S.result_count() == 2) store<1>(s, i, std::get<1>(results).get(i));
    });
    return s.o;
  }
};

}  // namespace vorx
