// The instance's sound output.
#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

class OutputsTest : public AdapterTest {
 protected:
  // The arguments of the instances that the library made for one of the host.
  std::vector<std::string> Made(const std::vector<const char*>& arguments) {
    published::ClearCalls();
    libvlc_instance_t* const instance = vlc().libvlc_new(static_cast<int>(arguments.size()), arguments.data());
    EXPECT_NE(instance, nullptr);
    EXPECT_EQ(published::Live().instances, 2);  // the fixture's and this one
    vlc().libvlc_release(instance);
    return published::CallsOf("libvlc_new");
  }
};
OVER_BOTH_GUISES(OutputsTest);

TEST_P(OutputsTest, AMissingOneIsReplacedByWaveout) {
  published::SetOutputs({"mmdevice", "waveout", "adummy"});
  EXPECT_THAT(Made({"--intf=dummy", "--aout=directsound", "--http-reconnect"}),
              ElementsAre("libvlc_new(\"--intf=dummy --aout=directsound --http-reconnect\")",
                          "libvlc_new(\"--intf=dummy --aout=waveout --http-reconnect\")"));
}

TEST_P(OutputsTest, OneThatIsThereIsKept) {
  published::SetOutputs({"directsound", "waveout"});
  EXPECT_THAT(Made({"--aout=directsound"}), ElementsAre("libvlc_new(\"--aout=directsound\")"));
}

TEST_P(OutputsTest, AMissingOneIsKeptWhereThereIsNoWaveout) {
  published::SetOutputs({"mmdevice"});
  EXPECT_THAT(Made({"--aout=directsound"}), ElementsAre("libvlc_new(\"--aout=directsound\")"));
  published::SetOutputs({});
  EXPECT_THAT(Made({"--aout=directsound"}), ElementsAre("libvlc_new(\"--aout=directsound\")"));
}

TEST_P(OutputsTest, AnInstanceThatNamesNoneIsLeftAlone) {
  published::SetOutputs({"waveout"});
  EXPECT_THAT(Made({"--intf=dummy"}), ElementsAre("libvlc_new(\"--intf=dummy\")"));
}

TEST_P(OutputsTest, ANullArgumentIsPassedOn) {
  EXPECT_THAT(Made({nullptr, "--quiet"}), ElementsAre("libvlc_new(\"null --quiet\")"));
}

TEST_P(OutputsTest, WhenTheSecondInstanceFailsTheFirstIsUsed) {
  published::SetOutputs({"waveout"});
  published::OnCall("libvlc_audio_output_list_get", [] { published::SetResult("libvlc_new", 0); });
  EXPECT_THAT(Made({"--aout=directsound"}), testing::SizeIs(2));
}

TEST_P(OutputsTest, WhenTheFirstInstanceFailsThereIsNone) {
  published::SetResult("libvlc_new", 0);
  const char* const arguments[] = {"--aout=directsound"};
  EXPECT_EQ(vlc().libvlc_new(1, arguments), nullptr);
}

}  // namespace
}  // namespace vantro::test
