#pragma once

// The whole run of the tool: reads the command line, runs the one mode that it
// selects and leaves the mode's answer, if it has one, in standardOutput().
// Returns 0 for every mode; a bad command line ends the process with 1 inside
// the parser.
int runSuiteDeployer(int &argc, char **argv);
