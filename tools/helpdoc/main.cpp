// Turns a help text into the PDF the application's help item opens:
//   tavna-helpdoc SOURCE.txt OUT.pdf
#include "tools/helpdoc/HelpText.h"
#include "tools/helpdoc/PdfWriter.h"

#include <fstream>
#include <iostream>
#include <sstream>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: tavna-helpdoc SOURCE.txt OUT.pdf\n";
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    if (!in) {
        std::cerr << "tavna-helpdoc: " << argv[1] << ": cannot be read\n";
        return 1;
    }
    std::ostringstream source;
    source << in.rdbuf();
    const auto blocks = TavHelpDoc::parseHelpText(source.str());
    if (blocks.empty()) {
        std::cerr << "tavna-helpdoc: " << argv[1] << ": no text\n";
        return 1;
    }
    try {
        TavHelpDoc::writePdf(blocks, argv[2]);
    } catch (const std::exception& e) {
        std::cerr << "tavna-helpdoc: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
