// DbCommand.h: quillbox-inspect db, the record of exported e-mails and other tables of a database file.
#pragma once
#include <string>
#include <vector>

// 0: done, or yes; 1: no, or wrong arguments; 2: failed, with the reason on standard error.
int DbCommand(const std::vector<std::string>& args);
int DbUsage(); // on standard error, like the other commands'; answers 1
