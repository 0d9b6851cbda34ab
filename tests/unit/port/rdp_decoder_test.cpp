#include "port/rdp_decoder.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "support/unit_command_run.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Words(std::initializer_list<std::uint32_t> words) {
  Bytes bytes;
  for (const std::uint32_t word : words) {
    for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<std::uint8_t>(word >> shift));
  }
  return bytes;
}

struct Decoded {
  std::string text;
  bool is_cisco;
};

Decoded Parse(const Bytes& response, std::size_t report_bytes = 16384) {
  const Bytes exact = response;  // a read past its end shows under a sanitizer
  ReportText text(report_bytes);
  Decoded decoded;
  decoded.is_cisco = true;
  TestRun test;
  ParseRDPDataBuffer(test.run, exact, text, decoded.is_cisco);
  decoded.text = text.Text();
  return decoded;
}

// The lines after the heading of the one descriptor in the response.
std::string Body(std::initializer_list<std::uint32_t> words) {
  Bytes response = Words(words);
  Bytes list = Words({static_cast<std::uint32_t>(response.size())});
  list.insert(list.end(), response.begin(), response.end());
  const std::string text = Parse(list).text;
  const std::string rule = std::string(33, '-') + "\n";
  const std::size_t second = text.find(rule, text.find(rule) + 1);
  return second == std::string::npos ? "no heading" : text.substr(second + rule.size());
}

std::string Heading(const std::string& text) {
  const std::string rule(33, '-');
  return rule + "\n" + text + "\n" + rule + "\n";
}

TEST(RdpDecoder, ResponseTooShortForItsListIsEmpty) {
  for (const Bytes& response :
       {Bytes{}, Bytes{0}, Bytes{0, 0, 0, 0xff}, Words({0}), Words({4, 0x00010005, 4, 1})}) {
    EXPECT_EQ(Parse(response).text, "");
    EXPECT_FALSE(Parse(response).is_cisco);
  }
}

TEST(RdpDecoder, TagBeforeTheListsEndIsDecoded) {
  for (const std::uint32_t length : {5u, 8u}) {
    EXPECT_EQ(Parse(Words({length, 0x00010005, 4, 1, 0x00010005, 4, 2})).text,
              Heading("FEC Status Information") + "Correctable Blocks: 1\n");
  }
}

TEST(RdpDecoder, ListLengthIsBoundedByTheResponse) {
  for (const std::uint32_t length : {100u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
    EXPECT_EQ(Parse(Words({length, 0x00010005, 4, 1})).text,
              Heading("FEC Status Information") + "Correctable Blocks: 1\n");
  }
}

TEST(RdpDecoder, UnknownWordsCostOneWordEach) {
  EXPECT_EQ(Parse(Words({100, 0x00010004, 0, 0xffffffff, 0x00010006, 0})).text,
            Heading("Buffer Credits Status Information"));
}

TEST(RdpDecoder, DecoderLeavesThePositionOnItsLastWord) {
  // The data of the first descriptor equals a tag, and is none.
  EXPECT_EQ(Parse(Words({100, 0x00010005, 8, 0x00010006, 0x00010006, 0x00010006, 4, 7})).text,
            Heading("FEC Status Information") + "Correctable Blocks: 65542\nUnCorreatable Blocks: 65542\n" +
                Heading("Buffer Credits Status Information") + "FC Port Buffer To Buffer Credits: 7\n");
}

TEST(RdpDecoder, DescriptorCutByTheEndDecodesTheWordsItHas) {
  EXPECT_EQ(Body({0x00010005, 0xffffffff, 1}), "Correctable Blocks: 1\n");
  EXPECT_EQ(Body({0x00010005, 0xffffffff}), "");
  EXPECT_EQ(Parse(Words({5, 0x00010005})).text, Heading("FEC Status Information"));
  Bytes half = Words({100, 0x00010005, 8, 1});
  half.insert(half.end(), {0, 0, 2});
  EXPECT_EQ(Parse(half).text, Heading("FEC Status Information") + "Correctable Blocks: 1\n");
}

TEST(RdpDecoder, DiagnosticsParametersBeginWithAnEmptyLine) {
  EXPECT_EQ(Parse(Words({100, 0x00000001, 4, 0xabcdef01})).text,
            "\n" + Heading("Diagnostics Parameters Information") +
                "Descriptor Tag: Link Service Request Information\nDescriptor Len: 4 Bytes\n"
                "Descriptor Value: 0xABCDEF01\n");
  EXPECT_EQ(Body({0x00000001, 0xfffffffe}),
            "Descriptor Tag: Link Service Request Information\nDescriptor Len: -2 Bytes\n");
}

TEST(RdpDecoder, PortSpeedsDisagreeOnTheBits11And12) {
  EXPECT_EQ(Body({0x00010001, 4, 0x08000800}),
            "Port Speed Capabilities: 8 Gbps\nPort Operating Speed: 10 Gbps\n");
  EXPECT_EQ(Body({0x00010001, 4, 0x10001000}),
            "Port Speed Capabilities: 10 Gbps\nPort Operating Speed: 8 Gbps\n");
  EXPECT_EQ(Body({0x00010001, 4, 0xffff0000}),
            "Port Speed Capabilities: 256 128 64 32 16 8 10 4 2 1 Gbps\nPort Operating Speed: 0 Gbps\n");
}

TEST(RdpDecoder, NamesAreWholeOrNotThere) {
  EXPECT_EQ(Body({0x00010003, 4, 0x01020304}), "");
  EXPECT_EQ(Body({0x00010003, 12, 0x01020304, 0x05060708, 0x090a0b0c}),
            "Node WWN: 01:02:03:04:05:06:07:08\n");
  EXPECT_EQ(Body({0x00010003, 20, 0x01020304, 0x05060708, 0x090a0b0c, 0x0d0e0f10, 0x11}),
            "Node WWN: 01:02:03:04:05:06:07:08\nPort WWN: 09:0a:0b:0c:0d:0e:0f:10\n"
            "Descriptor Value (4): 0x00000011\n");
}

TEST(RdpDecoder, TemperatureLimitsHaveScalesOfTheirOwn) {
  EXPECT_EQ(Body({0x00010007, 12, 0x004b00fb, 0x01900000, 0x10000000}),
            "Temperature High Alarm: 75.00\nTemperature Low Alarm: -5.00\n"
            "Temperature High Warning: -56.00\nTemperature Low Warning: 0.00\n");
}

TEST(RdpDecoder, RevisionHasItsLineEndBeforeTheDate) {
  EXPECT_EQ(
      Body({0x00010008, 60, 0x41000042, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x52315220, 0x32303236, 0x30313134}),
      "Vendor Name: A\nPart Number: \nSerial Number: \nRevision: R1R \nDate: 20260114\n");
}

TEST(RdpDecoder, FindsTheVendorInTheFirstOpticalProductDescriptor) {
  const Bytes cisco = Words({100, 0x00010005, 4, 1, 0x00010008, 16, 0x43495343, 0x4f2d5846, 0, 0});
  EXPECT_TRUE(Parse(cisco).is_cisco);
  // The first pass reads every word: data that equals the tag ends it as well.
  EXPECT_FALSE(
      Parse(Words({100, 0x00010005, 8, 0x00010008, 0, 0x00010008, 8, 0x43495343, 0x4f2d5846})).is_cisco);
  EXPECT_FALSE(
      Parse(Words({16, 0, 0, 0, 0x00010008, 16, 0x43495343, 0x4f2d5846})).is_cisco);  // after the end
}

TEST(RdpDecoder, ReportThatIsFullDropsWholeLines) {
  Bytes response = Words({500});
  for (int i = 0; i < 30; ++i) {
    const Bytes descriptor = Words({0x00010006, 4, 1});
    response.insert(response.end(), descriptor.begin(), descriptor.end());
  }
  const std::string whole = Parse(response).text;
  for (const std::size_t size : {std::size_t{1}, std::size_t{50}, whole.size(), whole.size() + 1}) {
    const std::string text = Parse(response, size).text;
    EXPECT_LT(text.size(), size);
    EXPECT_TRUE(text.empty() || text.back() == '\n');
  }
  EXPECT_EQ(Parse(response, whole.size() + 1).text, whole);
}

}  // namespace
