// The qetzflt subcommands; each takes the whole command line (argv[1] is its name) and
// returns the exit status.
#pragma once

int commandConvert(int argc, char** argv);
int commandInfo(int argc, char** argv);
int commandDeps(int argc, char** argv);
int commandStats(int argc, char** argv);
int commandRender(int argc, char** argv);
int commandView(int argc, char** argv);
