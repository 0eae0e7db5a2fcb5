// System.h: the seams' bodies for the system that is built for, under one name each, for what is built
// for both: the tools, the tests, the portable part of the program. None of them holds anything open.
#pragma once

#ifdef _WIN32
#include "platform/win32/WinClock.h"
#include "platform/win32/WinCodePage.h"
#include "platform/win32/WinFiles.h"
#include "platform/win32/WinLocale.h"
using SystemFiles = WinFiles;
using SystemClock = WinClock;
using SystemLocale = WinLocale;
using SystemCodePage = WinCodePage;
#else
#include "platform/posix/CodePage1252.h"
#include "platform/posix/EnglishLocale.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixFiles.h"
using SystemFiles = PosixFiles;
using SystemClock = PosixClock;
using SystemLocale = EnglishLocale;
using SystemCodePage = CodePage1252;
#endif
