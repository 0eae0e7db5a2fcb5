// NameCommand.h: the commands `name` and `crc`: what the program calls an exported file, and how it
// recognises an e-mail.
#pragma once
#include <string>
#include <vector>

int NameCommand(const std::vector<std::string>& args);
int CrcCommand(const std::vector<std::string>& args);
int NameUsage(); // answers 1, like the next
int CrcUsage();
