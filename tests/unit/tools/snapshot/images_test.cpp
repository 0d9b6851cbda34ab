#include "tools/snapshot/images.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>
#include <string>

namespace {

using recording::SfpImage;
using snapshot::MadeUp;

unsigned Sum(std::span<const std::uint8_t> bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), 0u) & 0xff;
}

std::span<std::uint8_t> Bytes(std::string& text) {
  return {reinterpret_cast<std::uint8_t*>(text.data()), text.size()};
}

// A module of 0x55 everywhere but in its identifier, its serial number and its check sum.
SfpImage Module(std::uint8_t identifier, std::size_t serial, std::size_t summed, std::size_t sum) {
  SfpImage image;
  std::memset(image.bytes, 0x55, sizeof image.bytes);
  image.bytes[0] = identifier;
  std::memcpy(image.bytes + serial, "SN0042          ", 16);
  image.bytes[sum] = static_cast<std::uint8_t>(Sum({image.bytes + summed, sum - summed}));
  return image;
}

TEST(Sfp, SerialNumberIsMadeUpAndTheSumRight) {
  SfpImage image = Module(0x03, 68, 64, 95);
  MadeUp made_up;
  AnonymiseSfp(image, made_up);
  EXPECT_NE(std::memcmp(image.bytes + 68, "SN0042", 6), 0);
  EXPECT_EQ(std::memcmp(image.bytes + 74, "          ", 10), 0);
  EXPECT_EQ(image.bytes[95], Sum({image.bytes + 64, 31}));
}

TEST(Sfp, WhatTheMakerUsesIsZeroAndTheRestStays) {
  SfpImage image = Module(0x03, 68, 64, 95);
  MadeUp made_up;
  AnonymiseSfp(image, made_up);
  for (const std::size_t kept : {1u, 67u, 84u, 94u, 149u, 154u, 249u, 253u, 256u, 375u, 386u, 511u}) {
    EXPECT_EQ(image.bytes[kept], 0x55) << kept;
  }
  for (const std::size_t zero : {96u, 127u, 148u, 155u, 248u, 254u, 255u, 376u, 385u, 387u, 499u}) {
    EXPECT_EQ(image.bytes[zero], 0) << zero;
  }
}

TEST(Sfp, WrongSumStaysWrongByAsMuch) {
  SfpImage image = Module(0x03, 68, 64, 95);
  image.bytes[95] = static_cast<std::uint8_t>(image.bytes[95] + 3);
  MadeUp made_up;
  AnonymiseSfp(image, made_up);
  EXPECT_EQ(image.bytes[95], (Sum({image.bytes + 64, 31}) + 3) & 0xff);
}

TEST(Sfp, EmptyCageStaysEmpty) {
  SfpImage image{};
  MadeUp made_up;
  AnonymiseSfp(image, made_up);
  EXPECT_EQ(Sum(image.bytes), 0u);
}

TEST(Qsfp, HasItsOwnPlaces) {
  for (const int identifier : {0x0c, 0x0d, 0x11, 0x12}) {
    SfpImage image = Module(static_cast<std::uint8_t>(identifier), 196, 192, 223);
    MadeUp made_up;
    AnonymiseSfp(image, made_up);
    EXPECT_NE(std::memcmp(image.bytes + 196, "SN0042", 6), 0);
    EXPECT_EQ(image.bytes[223], Sum({image.bytes + 192, 31}));
    EXPECT_EQ(image.bytes[68], 0x55);
    for (const std::size_t zero : {119u, 126u, 224u, 255u, 256u, 511u})
      EXPECT_EQ(image.bytes[zero], 0) << zero;
  }
}

// Vital Product Data: name, read-only items with their check sum, read-write items, end.
std::string Vpd(const std::string& tail = "") {
  std::string image(
      "\x82\x04\x00Name\x90\x1c\x00PN\x03"
      "ABC"
      "SN\x07"
      "AB12345"
      "VX\x03"
      "q7-"
      "RV\x02",
      35);
  unsigned sum = 0;
  for (const char byte : image) sum += static_cast<unsigned char>(byte);
  image += static_cast<char>(-sum & 0xff);
  image += '\x01';
  image += std::string(
      "\x91\x0c\x00V1\x03"
      "1.2YA\x03"
      "tag\x78",
      16);
  return image + tail;
}

TEST(Vpd, SerialNumberAndUnknownItemsAreMadeUp) {
  std::string image = Vpd("left over");
  const std::string before = image;
  MadeUp made_up;
  AnonymiseVpd(Bytes(image), made_up);
  EXPECT_EQ(image.size(), before.size());
  EXPECT_EQ(image.substr(0, 19), before.substr(0, 19));  // the name and PN
  EXPECT_EQ(image.find("AB12345"), std::string::npos);
  EXPECT_EQ(image.find("q7-"), std::string::npos);
  EXPECT_EQ(image.find("tag"), std::string::npos);
  EXPECT_NE(image.find("V1\x03"
                       "1.2"),
            std::string::npos);
  EXPECT_EQ(image.find("left over"), std::string::npos);
}

TEST(Vpd, SumUpToTheCheckByteIsZero) {
  std::string image = Vpd();
  const std::size_t end = image.find("RV") + 4;
  ASSERT_EQ(Sum(Bytes(image).first(end)), 0u);
  MadeUp made_up;
  AnonymiseVpd(Bytes(image), made_up);
  EXPECT_EQ(Sum(Bytes(image).first(end)), 0u);
  EXPECT_EQ(image[end], '\0');  // reserved space in the item
}

TEST(Vpd, SerialNumberIsThatOfTheRecord) {
  std::string image = Vpd();
  std::string serial = "AB12345";
  MadeUp made_up;
  made_up.Text(Bytes(serial));
  AnonymiseVpd(Bytes(image), made_up);
  EXPECT_NE(image.find(serial), std::string::npos);
}

TEST(Vpd, AnyBytesAtAllArePassed) {
  MadeUp made_up;
  for (unsigned seed = 0; seed < 500; ++seed) {
    std::string image(seed % 40, '\0');
    for (std::size_t i = 0; i < image.size(); ++i)
      image[i] = static_cast<char>((seed * 31 + i * i * 7) % 256);
    const std::size_t size = image.size();
    AnonymiseVpd(Bytes(image), made_up);
    EXPECT_EQ(image.size(), size);
  }
  std::string lying(
      "SN\xff"
      "A1",
      5);
  AnonymiseVpd(Bytes(lying), made_up);
  EXPECT_NE(lying.substr(3), "A1");
}

std::string Word(std::uint32_t word) {
  std::string text;
  for (const int shift : {24, 16, 8, 0}) text += static_cast<char>(word >> shift);
  return text;
}

std::string Descriptor(std::uint32_t tag, const std::string& payload) {
  return Word(tag) + Word(static_cast<std::uint32_t>(payload.size())) + payload;
}

TEST(Rdp, NamesAndTheSerialNumberAreMadeUp) {
  const std::string names =
      "\x10\x20"
      "abcdef\x20\x30"
      "abcdef";
  const std::string product = "CISCO-FINISAR   PART            SN0042          A1  260114  ";
  const std::string speeds = Descriptor(0x00010001, "1234");
  const std::string list = Descriptor(0x00010003, names) + speeds + Descriptor(0x00010008, product) +
                           Descriptor(0x00012345, "secret");
  std::string response = Word(static_cast<std::uint32_t>(list.size())) + list + "secret";
  const std::string before = response;
  MadeUp made_up;
  AnonymiseRdp(Bytes(response), made_up);
  ASSERT_EQ(response.size(), before.size());
  EXPECT_EQ(response.substr(0, 14), before.substr(0, 14));
  EXPECT_NE(response.substr(14, 6), "abcdef");
  EXPECT_EQ(response.substr(14, 6), response.substr(22, 6));  // equal names stay equal
  EXPECT_NE(response.find(speeds), std::string::npos);
  EXPECT_NE(response.find("CISCO-FINISAR   PART            "), std::string::npos);
  EXPECT_EQ(response.find("SN0042"), std::string::npos);
  EXPECT_NE(response.find("A1  260114  "), std::string::npos);
  EXPECT_EQ(response.find("secret"), std::string::npos);
}

TEST(Rdp, LengthsThatLieAreCutToTheResponse) {
  MadeUp made_up;
  for (std::string response :
       {std::string(), std::string("\xff"), Word(4000000000),
        Word(4000000000) + Word(0x10003) + Word(4000000000), Word(100) + Word(0x10008) + Word(3) + "abc",
        Word(9) + Word(0x10003) + Word(5) + "abcdef"}) {
    const std::size_t size = response.size();
    AnonymiseRdp(Bytes(response), made_up);
    EXPECT_EQ(response.size(), size);
  }
}

TEST(Name, KeepsItsFormat) {
  std::string name = std::string("\x21\x00\x00\x0e\x1e\x11\x22\x33", 8);
  std::string node = std::string("\x20\x00\x00\x0e\x1e\x11\x22\x33", 8);
  MadeUp made_up;
  MakeUpName(Bytes(name), made_up);
  MakeUpName(Bytes(node), made_up);
  EXPECT_EQ(name.substr(0, 2), std::string("\x21\x00", 2));
  EXPECT_NE(name.substr(2), std::string("\x00\x0e\x1e\x11\x22\x33", 6));
  EXPECT_EQ(name.substr(2), node.substr(2));
  std::string none(8, '\0');
  MakeUpName(Bytes(none), made_up);
  EXPECT_EQ(none, std::string(8, '\0'));
}

}  // namespace
