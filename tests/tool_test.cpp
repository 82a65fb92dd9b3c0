// The busdecode tool as others call it: the JSON contract, the text view and
// the error paths.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace {

struct SRun {
    int nStatus;
    std::string strOut;
    std::string strErr;
};

// Runs the tool with a shell-quoted argument string; standard input from a
// string when given.
SRun RunTool(const std::string& strArgs, const std::string& strStdin = "")
{
    // Tests run as parallel processes: every run gets files of its own.
    static int s_nRun = 0;
    const std::string strTmp = ::testing::TempDir() + "busdecode_tool_test_" + std::to_string(getpid()) + "_" +
                               std::to_string(++s_nRun);
    const std::string strIn = strTmp + ".in", strErr = strTmp + ".err";
    std::ofstream(strIn) << strStdin;
    const std::string strCommand =
        std::string("'") + BUSDECODE_TOOL_PATH + "' " + strArgs + " <'" + strIn + "' 2>'" + strErr + "'";
    SRun run{-1, "", ""};
    FILE* pPipe = popen(strCommand.c_str(), "r");
    if (!pPipe)
        return run;
    std::array<char, 4096> buf;
    std::size_t n;
    while ((n = fread(buf.data(), 1, buf.size(), pPipe)) > 0)
        run.strOut.append(buf.data(), n);
    const int nWait = pclose(pPipe);
    run.nStatus = WIFEXITED(nWait) ? WEXITSTATUS(nWait) : -1;
    std::ifstream err(strErr);
    run.strErr.assign(std::istreambuf_iterator<char>(err), std::istreambuf_iterator<char>());
    std::remove(strIn.c_str());
    std::remove(strErr.c_str());
    return run;
}

std::vector<nlohmann::json> JsonLines(const std::string& strOut)
{
    std::vector<nlohmann::json> a;
    std::size_t nPos = 0;
    while (nPos < strOut.size()) {
        const std::size_t nEnd = strOut.find('\n', nPos);
        a.push_back(nlohmann::json::parse(strOut.substr(nPos, nEnd - nPos)));
        nPos = nEnd == std::string::npos ? strOut.size() : nEnd + 1;
    }
    return a;
}

const char* const kCBW = "55534243010000000002000080000612000000240000000000000000000000";

TEST(Tool, JsonOfACommandBlockWrapper)
{
    const SRun run = RunTool(std::string("--json bot ") + kCBW);
    ASSERT_EQ(run.nStatus, 0) << run.strErr;
    const auto lines = JsonLines(run.strOut);
    ASSERT_EQ(lines.size(), 1u);
    const nlohmann::json& j = lines[0];

    std::vector<std::string> aKeys;
    for (auto it = j.begin(); it != j.end(); ++it)
        aKeys.push_back(it.key());
    std::sort(aKeys.begin(), aKeys.end());
    EXPECT_EQ(aKeys, (std::vector<std::string>{"decoder", "errors", "fields", "format", "has_response",
                                                "request_fields", "request_name", "response_fields",
                                                "response_name", "result"}));
    EXPECT_EQ(j["decoder"], "CMassStorageBulkOnlyWrapperSpec");
    EXPECT_EQ(j["result"], 1);
    EXPECT_EQ(j["request_name"], "Command Block Wrapper");
    EXPECT_EQ(j["response_name"], "");
    EXPECT_EQ(j["request_fields"], 11);
    EXPECT_EQ(j["response_fields"], 0);
    EXPECT_EQ(j["has_response"], 0);
    EXPECT_EQ(j["format"], 0);
    EXPECT_EQ(j["errors"], nlohmann::json::array());
    ASSERT_EQ(j["fields"].size(), 11u);

    const nlohmann::json expected = nlohmann::json::parse(R"([
      {"index":1,"id":24500,"name":"Signature","abbr":"Signature","offset":0,"length":32,"record_length":32,"value":"55534243","option":"Data Packet is CBW","option_abbr":"CBW"},
      {"index":6,"id":24505,"name":"Flags-Direction","abbr":"Flags-Direction","offset":103,"length":1,"record_length":1,"value":"01","option":"CBW-Flags direction-Data In","option_abbr":"Data In"},
      {"index":9,"id":24508,"name":"CB Length","abbr":"CB Length","offset":112,"length":5,"record_length":5,"value":"06","option":"","option_abbr":""},
      {"index":11,"id":24510,"name":"CB","abbr":"CB","offset":120,"length":128,"record_length":128,"value":"12000000240000000000000000000000","option":"","option_abbr":""}
    ])");
    for (const auto& field : expected)
        EXPECT_EQ(j["fields"][field["index"].get<int>() - 1], field);
}

TEST(Tool, PayloadsDecodeInOrderFromArgumentsAndFile)
{
    const SRun run = RunTool("--json CMassStorageBulkOnlyWrapperSpec '' '5553 4253 0100 0000 0000 0000 00' -f -",
                             "# a comment\n\n55534243 07\n");
    ASSERT_EQ(run.nStatus, 0) << run.strErr;
    const auto lines = JsonLines(run.strOut);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0]["fields"].size(), 0u) << "an empty argument is an empty payload";
    EXPECT_EQ(lines[1]["request_name"], "Command Status Wrapper");
    EXPECT_EQ(lines[1]["fields"][3]["option"], "Command Passed");
    EXPECT_EQ(lines[2]["fields"][1]["length"], 8);
}

TEST(Tool, BadInputStopsWithOneLineAndKeepsWhatWasDecoded)
{
    struct {
        const char* pszArgs;
        const char* pszStdin;
        std::size_t nDecoded;
        const char* pszMessagePart;
    } const aCases[] = {
        {"--json bot 5553 12G4 5553", "", 1, "HEX argument 2 of 3 \"12G4\": non-hex character 'G' at column 3"},
        {"--json bot 5553 123", "", 1, "HEX argument 2 of 2 \"123\": odd number of hex digits (3)"},
        {"--json nosuch 00", "", 0, "unknown decoder \"nosuch\""},
        {"--json bot 00 -f /nonexistent/payloads.txt", "", 1, "cannot read file \"/nonexistent/payloads.txt\""},
        {"--json bot --bin /nonexistent/payload.bin", "", 0, "cannot read file \"/nonexistent/payload.bin\""},
        {"--json bot -f -", "00\nabc\n", 1, "standard input line 2: odd number"},
        {"--json --hci-kind 9 bot 00", "", 0, "--hci-kind"},
        {"--json", "", 0, "no decoder given"},
        {"--json bot", "", 0, "no payload given"},
    };
    for (const auto& c : aCases) {
        const SRun run = RunTool(c.pszArgs, c.pszStdin);
        EXPECT_EQ(run.nStatus, 2) << c.pszArgs;
        EXPECT_EQ(JsonLines(run.strOut).size(), c.nDecoded) << c.pszArgs;
        EXPECT_NE(run.strErr.find(c.pszMessagePart), std::string::npos) << c.pszArgs << ": " << run.strErr;
        EXPECT_EQ(std::count(run.strErr.begin(), run.strErr.end(), '\n'), 1) << c.pszArgs << ": " << run.strErr;
    }
}

TEST(Tool, BinaryFileIsOnePayload)
{
    const std::string strPath = ::testing::TempDir() + "busdecode_csw_" + std::to_string(getpid()) + ".bin";
    const unsigned char aCSW[] = {0x55, 0x53, 0x42, 0x53, 1, 0, 0, 0, 0, 0, 0, 0, 2};
    std::ofstream(strPath, std::ios::binary).write(reinterpret_cast<const char*>(aCSW), sizeof aCSW);
    const SRun run = RunTool("--json bot --bin '" + strPath + "'");
    ASSERT_EQ(run.nStatus, 0) << run.strErr;
    EXPECT_EQ(JsonLines(run.strOut)[0]["fields"][3]["option"], "Phase Error");
}

TEST(Tool, HCIKindsAndBtSnoopCaptures)
{
    // An ACL packet from the controller: the broadcast flag of that direction.
    SRun run = RunTool("--json --hci-kind 2 hci '0120 0300 aabbcc'");
    ASSERT_EQ(run.nStatus, 0) << run.strErr;
    nlohmann::json j = JsonLines(run.strOut).at(0);
    EXPECT_EQ(j["decoder"], "CHCISpec");
    EXPECT_EQ(j["request_name"], "HCI ACL Data Packet");
    EXPECT_EQ(j["fields"][2]["id"], 27273);
    EXPECT_EQ(j["opcode_ocf"], 0);

    run = RunTool("--json hci 030c00");
    ASSERT_EQ(run.nStatus, 0) << run.strErr;
    j = JsonLines(run.strOut).at(0);
    EXPECT_EQ(j["request_name"], "Reset");
    EXPECT_EQ(j["opcode_ocf"], 27005);

    const std::string strCapture = std::string(BUSDECODE_CAPTURES_DIR) + "/a2dp/motog_btsnoop_hci.log";
    if (std::ifstream(strCapture)) {
        run = RunTool("--json --btsnoop '" + strCapture + "' hci");
        ASSERT_EQ(run.nStatus, 0) << run.strErr;
        EXPECT_EQ(JsonLines(run.strOut).size(), 3674u);
    }
    run = RunTool("--btsnoop '" + std::string(BUSDECODE_SOURCE_DIR) + "/README.md' hci");
    EXPECT_EQ(run.nStatus, 2);
    EXPECT_NE(run.strErr.find("not a btsnoop file"), std::string::npos) << run.strErr;
    run = RunTool("--btsnoop x.log bot");
    EXPECT_EQ(run.nStatus, 2);
    EXPECT_NE(run.strErr.find("goes with the HCI decoder"), std::string::npos) << run.strErr;
}

TEST(Tool, TextViewListAndCatalogue)
{
    SRun run = RunTool(std::string("bot ") + kCBW);
    ASSERT_EQ(run.nStatus, 0) << run.strErr;
    EXPECT_NE(run.strOut.find("Flags-Direction"), std::string::npos);
    EXPECT_NE(run.strOut.find("CBW-Flags direction-Data In"), std::string::npos);
    EXPECT_NE(run.strOut.find("request: \"Command Block Wrapper\""), std::string::npos);

    run = RunTool("list");
    ASSERT_EQ(run.nStatus, 0);
    EXPECT_NE(run.strOut.find("CMassStorageBulkOnlyWrapperSpec    bot              24500-24513   14"), std::string::npos)
        << run.strOut;

    run = RunTool("fields bot");
    ASSERT_EQ(run.nStatus, 0);
    EXPECT_NE(run.strOut.find("24513  \"Status\""), std::string::npos);
    EXPECT_NE(run.strOut.find("option 4: 0x05  \"Reserved\""), std::string::npos) << run.strOut;
}

}  // namespace
