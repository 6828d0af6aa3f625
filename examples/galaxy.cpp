// Draws a galaxy with compiled OpenCL C kernels that call the library: the same picture with vectors of 4, 8 and 16 floats and of
// 2 and 4 doubles, each checked against a double-precision reference and timed beside the scalar C library.
//
//   galaxy [--size 2048] [--sources 400] [--output galaxy.png]
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

#include "tools/command_line.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>

// ---- what an OpenCL runtime gives a kernel: the index of its work item ----

namespace {
thread_local size_t global_id[2];
size_t global_size[2];
}  // namespace
size_t get_global_id(unsigned dimension) { return global_id[dimension]; }
size_t get_global_size(unsigned dimension) { return global_size[dimension]; }

namespace {

// ---- the kernels ----

template <class T>
struct source {
  T x, y, sharpness, red, green, blue;
};

template <class T>
using kernel = void(T* red, T* green, T* blue, const source<T>* sources, int count);
extern "C" {
kernel<float> galaxy_float4, galaxy_float8, galaxy_float16;
kernel<double> galaxy_double2, galaxy_double4;
}

// ---- the sky ----

using sky = std::vector<source<double>>;

sky make_sky(size_t count, int size) {
  sky s;
  std::mt19937 random(20);
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> uniform;
  auto add = [&](double x, double y, double sigma, double r, double g, double b, double brightness) {
    sigma *= size / 2048.0;
    s.push_back({x * size, y * size, 1 / (2 * sigma * sigma), r * brightness, g * brightness, b * brightness});
  };
  add(0.5, 0.5, 60, 1.0, 0.82, 0.55, 2.2);   // the core
  add(0.5, 0.5, 190, 1.0, 0.72, 0.48, 0.5);  // its bulge
  add(0.5, 0.5, 480, 0.35, 0.4, 0.6, 0.12);  // the disc
  while (s.size() < count) {
    if (uniform(random) < 0.78) {  // two arms, logarithmic spirals that widen and turn blue on their way out
      double way = std::sqrt(uniform(random));
      double angle = 5.6 * way + (uniform(random) < 0.5 ? 0 : 3.14159265), radius = 0.045 * std::exp(2.15 * way);
      double x = 0.5 + radius * std::cos(angle) + 0.016 * (0.4 + way) * normal(random);
      double y = 0.5 + 0.8 * radius * std::sin(angle) + 0.016 * (0.4 + way) * normal(random);
      if (uniform(random) < 0.16)  // a nebula
        add(x, y, 6 + 6 * uniform(random), 1.0, 0.25, 0.45, 0.55);
      else
        add(x, y, 9 + 26 * uniform(random), 0.95 - 0.6 * way, 0.72 - 0.15 * way, 0.55 + 0.45 * way,
            0.10 + 0.30 * uniform(random));
    } else {  // a star in front
      double heat = uniform(random);
      add(uniform(random), uniform(random), 1.4 + 1.6 * uniform(random), 1.0 - 0.35 * heat, 0.85, 0.65 + 0.35 * heat,
          0.5 + 1.5 * uniform(random));
    }
  }
  return s;
}

template <class T>
std::vector<source<T>> in_type(const sky& s) {
  std::vector<source<T>> converted;
  for (const auto& o : s) converted.push_back({T(o.x), T(o.y), T(o.sharpness), T(o.red), T(o.green), T(o.blue)});
  return converted;
}

// ---- drawing ----

// Three planes of a colour each, some rows of `size` pixels.
template <class T>
struct field {
  int size;
  struct alignas(64) line {
    T at[64 / sizeof(T)];
  };
  std::vector<line> planes[3];

  field(int size, int rows) : size(size) {
    for (auto& p : planes) p.resize(static_cast<size_t>(size) * rows * sizeof(T) / 64);
  }
  T* row(int colour, int y) { return planes[colour].data()->at + static_cast<size_t>(y) * size; }
  const T* row(int colour, int y) const { return planes[colour].data()->at + static_cast<size_t>(y) * size; }
};

// Does work(row) for every row on all cores and shows how far it is; returns the seconds that it took.
template <class Work>
double for_each_row(const char* name, int rows, Work work) {
  std::atomic<int> next = 0, done = 0;
  const bool show = isatty(STDERR_FILENO);
  auto start = std::chrono::steady_clock::now();
  std::vector<std::thread> threads;
  for (unsigned t = 0; t < std::max(1u, std::thread::hardware_concurrency()); t++)
    threads.emplace_back([&] {
      for (int row; (row = next++) < rows;) {
        work(row);
        int now = ++done;
        if (show && now * 50 / rows != (now - 1) * 50 / rows) std::fprintf(stderr, "\r  %-9s %3d%%", name, 100 * now / rows);
      }
    });
  for (std::thread& t : threads) t.join();
  if (show) std::fprintf(stderr, "\r%20s\r", "");
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

template <class T>
double draw(const char* name, kernel<T>* galaxy, int lanes, const std::vector<source<T>>& sources, field<T>& out) {
  global_size[0] = static_cast<size_t>(out.size / lanes);
  global_size[1] = static_cast<size_t>(out.size);
  return for_each_row(name, out.size, [&](int row) {
    global_id[1] = static_cast<size_t>(row);
    for (global_id[0] = 0; global_id[0] < global_size[0]; global_id[0]++)
      galaxy(out.row(0, 0), out.row(1, 0), out.row(2, 0), sources.data(), static_cast<int>(sources.size()));
  });
}

// The same sum by the scalar C library, for every `step`-th row; row i of `out` is row i * step + step / 2 of the picture.
template <class T>
double draw_by_scalar_library(const char* name, int step, const std::vector<source<T>>& sources, field<T>& out) {
  return for_each_row(name, out.size / step, [&](int i) {
    for (int x = 0; x < out.size; x++) {
      T r = 0, g = 0, b = 0;
      for (const source<T>& s : sources) {
        T dx = static_cast<T>(x) - s.x, dy = static_cast<T>(i * step + step / 2) - s.y;
        T exponent = -s.sharpness * (dx * dx + dy * dy);
        T light = std::exp(exponent < -80 ? T(-80) : exponent);
        r += s.red * light, g += s.green * light, b += s.blue * light;
      }
      out.row(0, i)[x] = r, out.row(1, i)[x] = g, out.row(2, i)[x] = b;
    }
  });
}

// Largest relative difference between a picture and the rows that the scalar library drew in double precision.
template <class T>
double largest_difference(const field<T>& got, const field<double>& want, int step) {
  double worst = 0;
  for (int c = 0; c < 3; c++)
    for (int i = 0; i < want.size / step; i++)
      for (int x = 0; x < want.size; x++) {
        double w = want.row(c, i)[x], difference = std::abs(got.row(c, i * step + step / 2)[x] - w) / w;
        if (!(difference <= worst)) worst = difference;  // so that a NaN is seen
      }
  return worst;
}

void write_picture(const field<double>& f, vorx::output_file& file) {
  std::vector<unsigned char> rgb;
  for (int y = 0; y < f.size; y++)
    for (int x = 0; x < f.size; x++)
      for (int c = 0; c < 3; c++) {
        double shown = std::asinh(4 * f.row(c, y)[x]) / std::asinh(4 * 2.6);  // faint light stretched, bright light compressed
        rgb.push_back(static_cast<unsigned char>(255 * std::pow(std::min(1.0, shown), 0.8) + 0.5));
      }
  auto write = [](void* to, void* data, int bytes) {
    std::fwrite(data, 1, static_cast<size_t>(bytes), static_cast<std::FILE*>(to));
  };
  if (!stbi_write_png_to_func(write, file.get(), f.size, f.size, 3, rgb.data(), 3 * f.size))
    throw std::runtime_error("no memory");
  file.close();
}

class demo {
 public:
  demo(int size, size_t count) : size_(size), sky_(make_sky(count, size)), reference_(size, size / step) {
    evaluations_ = static_cast<double>(size) * size * sky_.size();
    std::printf("%d x %d pixels, %zu sources: %.0f million exponentials per picture\n\n", size, size, sky_.size(),
                evaluations_ / 1e6);
    std::printf("             million exp/s   beside C   largest relative difference\n");
    double seconds = draw_by_scalar_library("reference", step, sky_, reference_);
    rate_of_exp_ = evaluations_ / step / seconds;
    field<float> floats(size, size / step);
    rate_of_expf_ = evaluations_ / step / draw_by_scalar_library("expf", step, in_type<float>(sky_), floats);
  }

  template <class T>
  void run(const char* name, kernel<T>* galaxy, int lanes, double tolerance) {
    field<T> picture(size_, size_);
    double rate = evaluations_ / draw(name, galaxy, lanes, in_type<T>(sky_), picture);
    double difference = largest_difference(picture, reference_, step);
    bool fine = difference < tolerance;
    std::printf("  %-9s  %13.0f   %7.1fx   %.1e%s\n", name, rate / 1e6, rate / (sizeof(T) == 4 ? rate_of_expf_ : rate_of_exp_),
                difference, fine ? "" : "  TOO LARGE");
    good_ = good_ && fine;
    if constexpr (sizeof(T) == 8) last_ = std::move(picture);
  }

  void run_scalar() { std::printf("  C expf     %13.0f\n  C exp      %13.0f\n", rate_of_expf_ / 1e6, rate_of_exp_ / 1e6); }
  bool good() const { return good_; }
  const field<double>& picture() const { return last_; }

 private:
  static constexpr int step = 16;  // the scalar library draws every sixteenth row
  int size_;
  sky sky_;
  field<double> reference_, last_{0, 0};
  double evaluations_, rate_of_exp_, rate_of_expf_;
  bool good_ = true;
};

// Draws the galaxy in all types; returns the exit status.
int draw_all(int size, int count, const std::string& output) {
  vorx::output_file file(output);
  demo d(size, static_cast<size_t>(count));
  d.run_scalar();
  d.run("float4", galaxy_float4, 4, 1e-4);
  d.run("float8", galaxy_float8, 8, 1e-4);
  d.run("float16", galaxy_float16, 16, 1e-4);
  d.run("double2", galaxy_double2, 2, 1e-12);
  d.run("double4", galaxy_double4, 4, 1e-12);
  write_picture(d.picture(), file);
  std::printf("\nWrote %s\n", output.c_str());
  return d.good() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  int size = 2048, count = 400;
  std::string output = "galaxy.png";
  auto add_options = [&](CLI::App& app) {
    auto multiple_of_16 = [](const std::string& n) { return std::stol(n) % 16 ? "not a multiple of 16: " + n : std::string(); };
    app.add_option("--size", size, "Pixels of a side, a multiple of 16")
        ->capture_default_str()
        ->check(CLI::Range(16, 8192))
        ->check(multiple_of_16);
    app.add_option("--sources", count, "Sources of light")->capture_default_str()->check(CLI::Range(1, 100000));
    app.add_option("--output", output, "Where the picture goes")->capture_default_str();
  };
  return vorx::run_tool(argc, argv, "Draws a galaxy with one OpenCL C kernel on five vector types, and measures it.", add_options,
                        [&] { return draw_all(size, count, output); });
}
