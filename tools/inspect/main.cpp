// main.cpp: quillbox-inspect, what the portable core sees, for support, scripts and checks.
#include <cstdio>

int main()
{
    std::fputs("usage: quillbox-inspect COMMAND ...\n", stderr);
    return 1;
}
