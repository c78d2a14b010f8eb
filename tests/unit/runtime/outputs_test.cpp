// The instance's sound output.
#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

class OutputsTest : public AdapterTest {
 protected:
  // The calls of libvlc_new in the library when the host creates one instance.
  std::vector<std::string> Made(const std::vector<const char*>& arguments) {
    published::ClearCalls();
    libvlc_instance_t* const instance = New(arguments);
    EXPECT_NE(instance, nullptr);
    EXPECT_EQ(published::Live().instances, 2);  // the fixture's and this one
    vlc_.libvlc_release(instance);
    return published::CallsOf("libvlc_new");
  }

  libvlc_instance_t* New(const std::vector<const char*>& arguments) const {
    return vlc_.libvlc_new(static_cast<int>(arguments.size()), arguments.data());
  }
  libvlc_instance_t* NewWith(int count, const char* const* arguments = nullptr) const {
    return vlc_.libvlc_new(count, arguments);
  }
  void Release(libvlc_instance_t* instance) const { vlc_.libvlc_release(instance); }

 private:
  // A copy of the adapter that has not listed the outputs yet, as in a new process.
  FreshAdapter fresh_{ReadFileBytes(RealLibraryFile(GetParam())), L"outputs"};
  const Adapter& vlc_ = fresh_.functions();
};
OVER_BOTH_VARIANTS(OutputsTest);

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
}

TEST_P(OutputsTest, AnInstanceThatNamesNoneIsLeftAlone) {
  published::SetOutputs({"waveout"});
  EXPECT_THAT(Made({"--intf=dummy"}), ElementsAre("libvlc_new(\"--intf=dummy\")"));
}

TEST_P(OutputsTest, ACountWithoutArgumentsIsPassedOn) {
  for (const int count : {0, -1}) {
    published::ClearCalls();
    libvlc_instance_t* const instance = NewWith(count);
    EXPECT_THAT(published::CallsOf("libvlc_new"), ElementsAre("libvlc_new(null)")) << count;
    Release(instance);
  }
}

TEST_P(OutputsTest, ArgumentsWithACountOfZeroArePassedOn) {
  const char* const arguments[] = {"--aout=directsound"};
  published::ClearCalls();
  libvlc_instance_t* const instance = NewWith(0, arguments);
  EXPECT_THAT(published::CallsOf("libvlc_new"), ElementsAre("libvlc_new(\"\")"));
  Release(instance);
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
  EXPECT_EQ(New({"--aout=directsound"}), nullptr);
}

TEST_P(OutputsTest, TheSecondInstanceIsMadeOnce) {
  published::SetOutputs({"waveout"});
  Made({"--aout=directsound"});
  EXPECT_THAT(Made({"--aout=directsound"}), ElementsAre("libvlc_new(\"--aout=waveout\")"));
  EXPECT_THAT(published::CallsOf("libvlc_audio_output_list_get"), testing::IsEmpty());
}

TEST_P(OutputsTest, TheSecondInstanceIsMadeAsAskedForWhenItFailsWithWaveout) {
  published::SetOutputs({"waveout"});
  Made({"--aout=directsound"});
  published::ClearCalls();
  published::SetResult("libvlc_new", 0);
  EXPECT_EQ(New({"--aout=directsound"}), nullptr);
  EXPECT_THAT(published::CallsOf("libvlc_new"),
              ElementsAre("libvlc_new(\"--aout=waveout\")", "libvlc_new(\"--aout=directsound\")"));
}

TEST_P(OutputsTest, AnInstanceWithoutOutputsDoesNotDecideForTheNext) {
  published::SetOutputs({});
  EXPECT_THAT(Made({"--aout=directsound"}), ElementsAre("libvlc_new(\"--aout=directsound\")"));
  published::SetOutputs({"waveout"});
  EXPECT_THAT(Made({"--aout=directsound"}), testing::SizeIs(2));
}

TEST_P(OutputsTest, OutputsAreNotListedForAnInstanceThatNamesNone) {
  Made({"--no-audio"});
  EXPECT_THAT(published::CallsOf("libvlc_audio_output_list_get"), testing::IsEmpty());
}

}  // namespace
}  // namespace vantro::test
