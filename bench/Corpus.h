// Corpus.h: made-up messages, the same ones each time: 5,000 are some 200 MB.
#pragma once
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

// Three of ten have an attachment.
inline std::string MadeMessage(std::mt19937& random)
{
    const auto upTo = [&random](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    const auto number = [&](unsigned limit) { return std::to_string(upTo(limit)); };
    const char* const subjects[] = {"Re: minutes of the meeting", "=?iso-8859-1?Q?Gr=FC=DFe_aus_K=F6ln?=",
                                    "=?utf-8?B?UsOpc3Vtw6kgZGUgbGEgcsOpdW5pb24=?=", "Fwd: [list] question",
                                    "=?windows-1252?Q?Price_=96_list?= =?windows-1252?Q?_2007?="};
    const char* const senders[] = {"Ann Lee <ann@x.example>", "\"Lee, Bob\" <bob@x.example>",
                                   "carol@x.example", "=?iso-8859-1?Q?J=F6rg?= <joerg@x.example>"};
    std::string out =
        "Return-Path: <ann@x.example>\r\nDelivery-date: Tue, 3 Apr 2007 1" + number(10) + ":15:00 +0100\r\n";
    for (unsigned hop = 2 + upTo(4); hop > 0; --hop)
        out += "Received: from relay" + number(99) + ".example ([192.0.2." + number(255) +
               "])\r\n\tby mx.example with ESMTP id l33AFx" + number(99999) +
               ";\r\n\tTue, 3 Apr 2007 10:14:5" + number(10) + " +0100 (BST)\r\n";
    out += std::string("From: ") + senders[upTo(4)] + "\r\nTo: " + senders[upTo(4)] + ",\r\n\t" +
           senders[upTo(4)] + "\r\nCc: " + senders[upTo(4)] + "\r\nSubject: " + subjects[upTo(5)] +
           "\r\nDate: Tue, 3 Apr 2007 10:0" + number(10) + ":0" + number(10) + " +0100\r\nMessage-ID: <" +
           number(999999) + "@x.example>\r\nMIME-Version: 1.0\r\nX-Mailer: some mailer 6.00.2900\r\n";
    const bool attached = upTo(10) < 3;
    out += attached
               ? "Content-Type: multipart/mixed;\r\n\tboundary=\"=_part\"\r\n\r\n--=_part\r\nContent-Type: "
                 "text/plain\r\n\r\n"
               : "Content-Type: text/plain; charset=iso-8859-1\r\n\r\n";
    for (unsigned line = 10 + upTo(120); line > 0; --line)
        out += "The minutes of meeting " + number(1000) + " are attached; please read them before " +
               number(30) + " May.\r\n";
    if (!attached) return out;
    out += "--=_part\r\nContent-Type: application/octet-stream\r\nContent-Transfer-Encoding: base64\r\n"
           "Content-Disposition: attachment;\r\n\tfilename=\"a.doc\"\r\n\r\n";
    for (unsigned line = 100 + upTo(2700); line > 0; --line) {
        for (int i = 0; i < 76; ++i)
            out += "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"[upTo(64)];
        out += "\r\n";
    }
    return out + "--=_part--\r\n";
}

// One file each, in a directory that is there; of each message so many bytes at the most.
inline std::vector<std::string> MadeMessages(const std::filesystem::path& directory, std::size_t count,
                                             std::size_t most = std::string::npos)
{
    std::mt19937 random(20070403);
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < count; ++i) {
        paths.push_back((directory / (std::to_string(10000 + i) + ".eml")).string());
        std::ofstream(paths.back(), std::ios::binary) << MadeMessage(random).substr(0, most);
    }
    return paths;
}
