#include "tools/lab/map/picture.h"

#include <gtest/gtest.h>

#include <string>

#include "unit/tools/lab/recorded_host.h"

namespace {

std::string PictureOf(const recording::HostRecording& host) {
  return map::Picture(map::BuildView(host), "lab.yaml");
}

bool Holds(const std::string& picture, const char* text) {
  return picture.find(text) != std::string::npos;
}

TEST(Picture, HasWordsForThoseWhoSeeNone) {
  const std::string picture = PictureOf(SmallHost());
  EXPECT_TRUE(Holds(picture, "<title id=\"map-title\">Map of lab.yaml</title>"));
  EXPECT_TRUE(Holds(picture, "1 adapter, 2 ports, 1 target, 4 LUNs. Ports: 2 good."));
  EXPECT_TRUE(
      Holds(picture, "<title>Port 0, 21:00:00:0e:1e:00:00:00, 16 Gbps, good, 1 target, 4 LUNs</title>"));
}

TEST(Picture, SaysColoursInWordsToo) {
  recording::HostRecording host = SmallHost();
  FirstPort(host).record.port_state = PortState::kOffline;
  const std::string picture = PictureOf(host);
  EXPECT_TRUE(Holds(picture, "class=\"problem\""));
  EXPECT_TRUE(Holds(picture, ">Problem: Link down</text>"));
  EXPECT_TRUE(Holds(picture, ">Good</text>"));
}

TEST(Picture, EscapesDeviceTexts) {
  recording::HostRecording host = SmallHost();
  SetText(host.adapters[0].record.model, "<b>&\x1b\xff");
  const std::string picture = PictureOf(host);
  EXPECT_TRUE(Holds(picture, ">&lt;b&gt;&amp;\xEF\xBF\xBD\xEF\xBF\xBD</text>"));
  EXPECT_FALSE(Holds(picture, "<b>"));
  EXPECT_EQ(picture.find('\x1b'), std::string::npos);
}

TEST(Picture, CutsLongTextsAndKeepsThemWhole) {
  recording::HostRecording host = SmallHost();
  SetText(host.adapters[0].record.model, "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW");
  EXPECT_TRUE(Holds(PictureOf(host), "<title>WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW</title>WWWW"));
}

TEST(Picture, SaysThatAModelIsMissing) {
  recording::HostRecording host = SmallHost();
  SetText(host.adapters[0].record.model, "");
  EXPECT_TRUE(Holds(PictureOf(host), ">No model</text>"));
}

TEST(Picture, OfNoAdaptersIsAPicture) {
  EXPECT_TRUE(Holds(PictureOf(recording::HostRecording{}), ">No adapters</text>"));
}

// The highest picture: the most ports, each with the most rows of targets.
TEST(Picture, OfAHugeHostStaysWithinWhatRenderersTake) {
  recording::HostRecording host = SmallHost();
  host.adapters.assign(64, host.adapters[0]);
  auto& targets = FirstPort(host).targets;
  for (std::size_t i = 0; i < 100; ++i) {
    targets.push_back(TargetNumbered(2, 1));
    SetText(targets.back().record.product_id, "P" + std::to_string(i));
  }
  host.adapters[0].ports.assign(64, host.adapters[0].ports[0]);
  const std::string picture = PictureOf(host);
  const std::size_t at = picture.find("height=\"") + 8;
  EXPECT_LT(std::stoi(picture.substr(at)), 32000);
  EXPECT_LT(picture.size(), 1u << 20);
}

}  // namespace
