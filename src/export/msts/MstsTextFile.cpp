#include "export/msts/MstsTextFile.h"

#include "export/textures/Windows1252.h"

namespace railwright::exportmsts {

void MstsTextFile::Line(std::string_view text) {
    bytes_ += exporttextures::ToWindows1252(text);
    bytes_ += "\r\n";
}

void MstsTextFile::Lines(std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines) {
        Line(line);
    }
}

}  // namespace railwright::exportmsts
