#include "base/checksum.h"

namespace quillomar {
namespace {

constexpr std::uint64_t kMixer = 0x9E3779B97F4A7C15;
constexpr int kMixShift = 29;
constexpr std::size_t kWord = sizeof(std::uint64_t);

std::uint64_t Mix(std::uint64_t sum, std::uint64_t word) {
  sum = (sum ^ word) * kMixer;
  return sum ^ (sum >> kMixShift);
}

std::uint64_t Word(ByteSpan bytes) {
  constexpr int kBitsPerByte = 8;
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i)
    word |= std::uint64_t{bytes[i]} << (kBitsPerByte * i);
  return word;
}

}  // namespace

std::uint64_t Checksum(ByteSpan bytes, std::uint64_t seed) {
  std::uint64_t sum = Mix(seed, kMixer);
  while (bytes.size() >= kWord) {
    sum = Mix(sum, Word(bytes.first<kWord>()));
    bytes = bytes.subspan(kWord);
  }
  return Mix(Mix(sum, Word(bytes)), bytes.size());
}

}  // namespace quillomar
