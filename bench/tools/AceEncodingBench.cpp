// ACE encoding of a 2048×2048 texture from pixels in memory to the finished file body: the
// mip-maps, the channel scanlines or the DXT1 blocks, and the tables. Reading the source picture
// and writing the file are left out. Times are wall-clock: DXT1 runs on all cores.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "ace/AceContainer.h"
#include "ace/AceEncoder.h"
#include "ace/Image.h"

namespace {

using namespace railwright::ace;

constexpr int32_t kSide = 2048;

// Broad slopes with fine noise on top, so that neither the DXT1 fitting nor zlib meets only
// flat colour.
Image TestTexture(bool withAlpha) {
    Image image;
    image.width = kSide;
    image.height = kSide;
    image.hasAlpha = withAlpha;
    image.rgba.resize(static_cast<size_t>(kSide) * kSide * 4);
    uint32_t noise = 12345;
    for (int32_t y = 0; y < kSide; ++y) {
        for (int32_t x = 0; x < kSide; ++x) {
            noise = noise * 1664525u + 1013904223u;
            const int32_t jitter = static_cast<int32_t>(noise >> 28);  // 0..15
            uint8_t* pixel = image.Pixel(x, y);
            pixel[0] = static_cast<uint8_t>((x / 8 + jitter) & 0xFF);
            pixel[1] = static_cast<uint8_t>((y / 8 + jitter) & 0xFF);
            pixel[2] = static_cast<uint8_t>(((x + y) / 16 + jitter) & 0xFF);
            pixel[3] = static_cast<uint8_t>(withAlpha ? ((x / 64) % 2) * 255 : 255);
        }
    }
    return image;
}

void Encode(benchmark::State& state, bool withAlpha, AceOptions options) {
    const Image image = TestTexture(withAlpha);
    size_t bodySize = 0;
    for (auto _ : state) {
        Result<std::vector<uint8_t>> body = EncodeAceBody(image, options);
        if (!body) {
            state.SkipWithError(body.FaultText().c_str());
            return;
        }
        bodySize = body.Value().size();
        benchmark::DoNotOptimize(body.Value().data());
    }
    state.counters["body_MB"] = static_cast<double>(bodySize) / 1e6;
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kSide * kSide * 4);
}

// 24-bit structured: red, green and blue scanlines with the mip-maps down to 1×1.
void BM_AceStructured24Bit(benchmark::State& state) {
    Encode(state, false, AceOptions{});
}
BENCHMARK(BM_AceStructured24Bit)->Unit(benchmark::kMillisecond)->UseRealTime();

// The same picture with an 8-bit alpha channel, and with a 1-bit mask (-trans).
void BM_AceStructuredAlpha(benchmark::State& state) {
    Encode(state, true, AceOptions{});
}
BENCHMARK(BM_AceStructuredAlpha)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_AceStructuredMask(benchmark::State& state) {
    Encode(state, true, AceOptions{true, AceData::Structured});
}
BENCHMARK(BM_AceStructuredMask)->Unit(benchmark::kMillisecond)->UseRealTime();

// DXT1 with mip-maps (-dxt), opaque and with punch-through alpha (-trans -dxt).
void BM_AceDxt1MipMaps(benchmark::State& state) {
    Encode(state, false, AceOptions{false, AceData::Dxt1});
}
BENCHMARK(BM_AceDxt1MipMaps)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_AceDxt1MipMapsMask(benchmark::State& state) {
    Encode(state, true, AceOptions{true, AceData::Dxt1});
}
BENCHMARK(BM_AceDxt1MipMapsMask)->Unit(benchmark::kMillisecond)->UseRealTime();

// The compressed container (-zlib, acecomp) around a 24-bit structured body.
void BM_AceZlibContainer(benchmark::State& state) {
    const Result<std::vector<uint8_t>> body = EncodeAceBody(TestTexture(false), AceOptions{});
    size_t fileSize = 0;
    for (auto _ : state) {
        Result<std::vector<uint8_t>> file = WrapCompressed(body.Value());
        fileSize = file.Value().size();
        benchmark::DoNotOptimize(file.Value().data());
    }
    state.counters["file_MB"] = static_cast<double>(fileSize) / 1e6;
}
BENCHMARK(BM_AceZlibContainer)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
