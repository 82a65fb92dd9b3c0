#include "tests/ToolRun.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

SRun RunTool(const std::string& strArgs, const std::string& strStdin)
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
