// Draws the applet's icons: a blue disc with a white check mark, 32 bits of colour.
//
// Usage: draw_icons FOLDER. Writes health.ico (16 and 32 pixels) and health_low.ico (16 pixels, its
// mark a little bolder). The icons are kept in the tree; this program is how to make them again.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace {

struct Point {
    double x, y;
};

constexpr int kSamples = 8;  // a pixel's edge, for smooth outlines

double DistanceToSegment(Point p, Point a, Point b) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double along = ((p.x - a.x) * dx + (p.y - a.y) * dy) / (dx * dx + dy * dy);
    const double t = std::clamp(along, 0.0, 1.0);
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

// The picture on the unit square: 0 nothing, 1 disc, 2 mark.
int InkAt(Point p, double markWidth) {
    constexpr Point left{0.28, 0.52}, foot{0.44, 0.68}, right{0.73, 0.34};
    if (std::hypot(p.x - 0.5, p.y - 0.5) > 0.48) return 0;
    const double mark =
        std::min(DistanceToSegment(p, left, foot), DistanceToSegment(p, foot, right));
    return mark <= markWidth / 2 ? 2 : 1;
}

struct Image {
    int size;
    std::vector<std::uint32_t> pixels;  // BGRA, top row first
};

Image Draw(int size, double markWidth) {
    Image image{size, {}};
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            int disc = 0, mark = 0;
            for (int s = 0; s < kSamples * kSamples; ++s) {
                const Point p{(x + (s % kSamples + 0.5) / kSamples) / size,
                              (y + (s / kSamples + 0.5) / kSamples) / size};
                const int ink = InkAt(p, markWidth);
                disc += ink == 1;
                mark += ink == 2;
            }
            const int inked = disc + mark;
            const auto blend = [&](int blue, int white) {
                return inked ? static_cast<std::uint32_t>((disc * blue + mark * white) / inked)
                             : 0u;
            };
            const auto alpha = static_cast<std::uint32_t>(255 * inked / (kSamples * kSamples));
            image.pixels.push_back(alpha << 24 | blend(0x1E, 255) << 16 | blend(0x6B, 255) << 8 |
                                   blend(0xC8, 255));
        }
    }
    return image;
}

void Put(std::vector<std::uint8_t>& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

std::uint32_t MaskBytes(int size) {
    return static_cast<std::uint32_t>((size + 31) / 32 * 4 * size);
}

std::uint32_t BitmapBytes(int size) {
    return 40 + static_cast<std::uint32_t>(size * size * 4) + MaskBytes(size);
}

void PutBitmap(std::vector<std::uint8_t>& out, const Image& image) {
    const auto size = static_cast<std::uint32_t>(image.size);
    Put(out, 40, 4);
    Put(out, size, 4);
    Put(out, size * 2, 4);  // picture and mask
    Put(out, 1, 2);
    Put(out, 32, 2);
    for (int i = 0; i < 6; ++i) Put(out, 0, 4);
    for (int y = image.size - 1; y >= 0; --y)
        for (int x = 0; x < image.size; ++x)
            Put(out, image.pixels[static_cast<std::size_t>(y * image.size + x)], 4);
    out.insert(out.end(), MaskBytes(image.size), 0);
}

bool WriteIcon(const std::string& path, const std::vector<Image>& images) {
    std::vector<std::uint8_t> out;
    Put(out, 0, 2);
    Put(out, 1, 2);
    Put(out, static_cast<std::uint32_t>(images.size()), 2);
    auto offset = static_cast<std::uint32_t>(6 + 16 * images.size());
    for (const Image& image : images) {
        Put(out, static_cast<std::uint32_t>(image.size), 1);
        Put(out, static_cast<std::uint32_t>(image.size), 1);
        Put(out, 0, 2);
        Put(out, 1, 2);
        Put(out, 32, 2);
        Put(out, BitmapBytes(image.size), 4);
        Put(out, offset, 4);
        offset += BitmapBytes(image.size);
    }
    for (const Image& image : images) PutBitmap(out, image);
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    const bool written = std::fwrite(out.data(), 1, out.size(), file) == out.size();
    return std::fclose(file) == 0 && written;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: draw_icons FOLDER\n", stderr);
        return 2;
    }
    const std::string folder = argv[1];
    const bool done = WriteIcon(folder + "/health.ico", {Draw(16, 0.15), Draw(32, 0.12)}) &&
                      WriteIcon(folder + "/health_low.ico", {Draw(16, 0.19)});
    return done ? 0 : 1;
}
