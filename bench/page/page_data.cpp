#include "page/contender.hpp"

namespace Bench {

PageData MakePageData(int rows) {
    PageData data;
    data.items = {"Status", "Network", "Storage", "Processes", "Log", "Settings"};
    data.tabs = {"Interfaces", "Addresses", "Traffic", "Hardware"};
    data.title = "Network & interfaces";
    for (int i = 0; i < rows; ++i) {
        std::string const number = std::to_string(i);
        Row row = {"row" + number, "Interface " + number, {}};
        for (int j = 0; j < 5; ++j) {
            std::string const text = j == 2 ? "<up> & \"running\" " : "value of the attribute ";
            row.cells.push_back({text + number, j % 2 == 0 ? "width: 20%" : "text-align: right"});
        }
        data.rows.push_back(row);
    }
    return data;
}

}  // namespace Bench
