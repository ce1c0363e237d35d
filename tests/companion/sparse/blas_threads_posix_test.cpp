// What OpenBLAS does on a processor that is newer than the library.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/vector_bits.h"
#include "sparse/blas_threads.h"

namespace kvx::test {
namespace {

constexpr const char* Variable = "OPENBLAS_CORETYPE";

template <typename Function>
Function* Find(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}

class BlasThreadsTest : public testing::Test {
 protected:
  void SetUp() override {
    nameCore = Find<const char*()>("openblas_get_corename");
    drop = Find<void()>("gotoblas_dynamic_quit");
    choose = Find<void()>("gotoblas_dynamic_init");
    if (nameCore == nullptr || drop == nullptr || choose == nullptr) {
      GTEST_SKIP() << "BLAS is another library";
    }
    if (korvex::WidestVectorBits() < 256) GTEST_SKIP() << "the processor has no longer vectors";
    if (const char* const value = std::getenv(Variable)) given = value;
    setenv(Variable, "Prescott", 1);
    ChooseAnew();
  }
  void TearDown() override {
    if (nameCore == nullptr || drop == nullptr || choose == nullptr) return;
    if (given.empty()) {
      unsetenv(Variable);
    } else {
      setenv(Variable, given.c_str(), 1);
    }
    ChooseAnew();
    SetBlasThreads(1);
  }
  void ChooseAnew() const {
    drop();
    choose();
  }

  const char* (*nameCore)() = nullptr;
  void (*drop)() = nullptr;
  void (*choose)() = nullptr;
  std::string given;
};

TEST_F(BlasThreadsTest, AnUnknownProcessorUsesItsVectors) {
  ASSERT_EQ(nameCore(), std::string("Prescott"));
  unsetenv(Variable);
  SetBlasThreads(1);
  EXPECT_NE(nameCore(), std::string("Prescott"));
}

TEST_F(BlasThreadsTest, TheEnvironmentsChoiceStays) {
  SetBlasThreads(1);
  EXPECT_EQ(nameCore(), std::string("Prescott"));
}

}  // namespace
}  // namespace kvx::test
