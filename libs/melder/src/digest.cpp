#include "digest.h"

#include <bit>
#include <cstring>

namespace melder {

namespace {

constexpr size_t kBlock = 64;
using State = std::array<uint32_t, 8>;

/** First 32 bits of the fractional parts of the cube roots of the first 64 primes. */
constexpr std::array<uint32_t, 64> kRound = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

uint32_t wordAt(const uint8_t* bytes) {
  return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
         static_cast<uint32_t>(bytes[2]) << 8 | static_cast<uint32_t>(bytes[3]);
}

void absorb(State& state, const uint8_t* block) {
  std::array<uint32_t, 64> word = {};
  for (size_t i = 0; i < 16; ++i) {
    word[i] = wordAt(block + 4 * i);
  }
  for (size_t i = 16; i < 64; ++i) {
    const uint32_t a = word[i - 15];
    const uint32_t b = word[i - 2];
    word[i] = word[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ (a >> 3)) + word[i - 7] +
              (std::rotr(b, 17) ^ std::rotr(b, 19) ^ (b >> 10));
  }
  State s = state;
  for (size_t i = 0; i < 64; ++i) {
    const uint32_t choose = (s[4] & s[5]) ^ (~s[4] & s[6]);
    const uint32_t most = (s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]);
    const uint32_t high = s[7] + (std::rotr(s[4], 6) ^ std::rotr(s[4], 11) ^ std::rotr(s[4], 25)) +
                          choose + kRound[i] + word[i];
    const uint32_t low = (std::rotr(s[0], 2) ^ std::rotr(s[0], 13) ^ std::rotr(s[0], 22)) + most;
    s = {high + low, s[0], s[1], s[2], s[3] + high, s[4], s[5], s[6]};
  }
  for (size_t i = 0; i < state.size(); ++i) {
    state[i] += s[i];
  }
}

} // namespace

Digest sha256(std::string_view bytes) {
  State state = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
  size_t left = bytes.size();
  for (; left >= kBlock; left -= kBlock, data += kBlock) {
    absorb(state, data);
  }
  std::array<uint8_t, 2 * kBlock> tail = {};
  if (left > 0) {
    std::memcpy(tail.data(), data, left);
  }
  tail[left] = 0x80;
  const size_t size = left + 9 > kBlock ? 2 * kBlock : kBlock;
  const uint64_t bits = static_cast<uint64_t>(bytes.size()) * 8;
  for (size_t i = 0; i < 8; ++i) {
    tail[size - 1 - i] = static_cast<uint8_t>(bits >> (8 * i));
  }
  absorb(state, tail.data());
  if (size > kBlock) {
    absorb(state, tail.data() + kBlock);
  }
  Digest digest = {};
  for (size_t i = 0; i < digest.size(); ++i) {
    digest[i] = static_cast<uint8_t>(state[i / 4] >> (24 - 8 * (i % 4)));
  }
  return digest;
}

std::string hexOf(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const char byte : bytes) {
    text += kDigits[static_cast<unsigned char>(byte) >> 4];
    text += kDigits[static_cast<unsigned char>(byte) & 0xF];
  }
  return text;
}

} // namespace melder
