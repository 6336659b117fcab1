#include "cli/batchsupport.h"
#include "files/basicfile.h"
#include "files/dnafile.h"
#include "files/multifile.h"

namespace spectrane {
namespace {

class ComputeCommand : public testing::Test {
 protected:
  template <typename OptionT, typename RecordT>
  std::string Saved(const FileModule<OptionT, RecordT>& module, const OptionT& option,
                    const std::vector<RecordT>& rows) const {
    const std::string path = folder_.Path("table");
    const FileFault fault =
        SaveDataFile(module, path, option, static_cast<std::int32_t>(rows.size()),
                     [&rows](std::int32_t i) { return rows[static_cast<std::size_t>(i)]; });
    EXPECT_FALSE(fault) << FaultWords(fault);
    return path;
  }

  TemporaryFolder folder_;
};

TEST_F(ComputeCommand, GivesTheResultOfEachRowOfATable) {
  MultiOption option;
  option.WorkWLNo = 2;
  option.Parameter = {2, -1, 100};
  MultiRecord first;
  first.Abs = {0.5, 0.25, 1};
  first.Result = 123;
  MultiRecord second;
  second.Abs = {0, 0.75, 1};
  const std::string path = Saved(MultiModule(), option, {first, second});
  const std::string before = ReadBytes(path);
  const BatchOutcome outcome = Batch({"compute", path});
  EXPECT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.Out, "{\"Result\":[0.75,-0.75]}\n");
  EXPECT_EQ(ReadBytes(path), before);
}

TEST_F(ComputeCommand, GivesThreeColumnsOfADNATable) {
  DNAOption option;
  option.Factor = {2, 4, 8, 16};
  DNARecord sample;
  sample.Abs = {0.75, 0.5, 0.25};
  DNARecord level;  // The ratio of this one cannot be had.
  level.Abs = {0.5, 0.25, 0.25};
  level.Ratio = 1.5;
  const BatchOutcome outcome = Batch({"compute", Saved(DNAModule(), option, {sample, level})});
  EXPECT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.Out, "{\"DNA\":[0.0,0.5],\"Protein\":[-6.0,-4.0],\"Ratio\":[2.0,1.5]}\n");
}

TEST_F(ComputeCommand, AnEmptyTableHasEmptyColumns) {
  EXPECT_EQ(Batch({"compute", Saved<MultiOption, MultiRecord>(MultiModule(), {}, {})}).Out,
            "{\"Result\":[]}\n");
  EXPECT_EQ(Batch({"compute", Saved<DNAOption, DNARecord>(DNAModule(), {}, {})}).Out,
            "{\"DNA\":[],\"Protein\":[],\"Ratio\":[]}\n");
}

TEST_F(ComputeCommand, OtherKindsHaveNothingToCompute) {
  const BatchOutcome outcome = Batch({"compute", Saved<BasicOption, BasicRecord>(BasicModule(), {}, {})});
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_EQ(outcome.Out, "");
  EXPECT_EQ(outcome.Err, "table: has no results to compute\n");
}

}  // namespace
}  // namespace spectrane
