#pragma once

// Each part of the main window has its tests in a file of its own; one program runs them all.
int testHeldInput(int argc, char** argv);
int testWindowVisibility(int argc, char** argv);
int testTextPanes(int argc, char** argv);
int testLanguagePickers(int argc, char** argv);
int testWebPageBar(int argc, char** argv);
int testFocusMark(int argc, char** argv);
