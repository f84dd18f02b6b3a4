#pragma once

#include "batch/CmdLine.h"

// Reading the arguments of an external batch command. A missing argument
// reads as empty, and text that is not a number reads as 0, so a command
// never fails on its arguments: the control simply takes that value.
namespace CmdArgs {

inline QString str(const CmdLine &cmd, int i)
{
    return i >= 0 && i < cmd.args.size() ? cmd.args.at(i) : QString();
}

inline int toInt(const CmdLine &cmd, int i)
{
    return str(cmd, i).toInt();
}

inline double toDouble(const CmdLine &cmd, int i)
{
    return str(cmd, i).toDouble();
}

// On only for the integer 1: "yes", "2" or nothing all mean off.
inline bool toBool(const CmdLine &cmd, int i)
{
    return toInt(cmd, i) == 1;
}

} // namespace CmdArgs
