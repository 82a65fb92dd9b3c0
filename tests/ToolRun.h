// The busdecode tool run as others run it: arguments through the shell,
// standard input from a string, output and exit status taken back.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

struct SRun {
    int nStatus;
    std::string strOut;
    std::string strErr;
};

// Runs the tool with a shell-quoted argument string; standard input from a
// string when given.
SRun RunTool(const std::string& strArgs, const std::string& strStdin = "");

// The JSON objects of the output, one per line.
template <class TJson = nlohmann::json>
std::vector<TJson> JsonLines(const std::string& strOut)
{
    std::vector<TJson> a;
    std::size_t nPos = 0;
    while (nPos < strOut.size()) {
        const std::size_t nEnd = strOut.find('\n', nPos);
        a.push_back(TJson::parse(strOut.substr(nPos, nEnd - nPos)));
        nPos = nEnd == std::string::npos ? strOut.size() : nEnd + 1;
    }
    return a;
}
