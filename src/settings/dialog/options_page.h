#pragma once

#include <wx/panel.h>

#include <initializer_list>
#include <set>
#include <string_view>
#include <vector>

class wxBoxSizer;
class wxButton;
class wxFlexGridSizer;
class wxSizer;

namespace glimmer {

/// One page of the options dialog. Builds the controls of options from their descriptions (option_table.h), each under
/// its control name with its help text and, where its caption has a free letter, an access key.
class OptionsPage : public wxPanel {
public:
    OptionsPage(wxWindow* parent, std::string_view title);

    /// Everything added after this stands in a box with that heading.
    void group(std::string_view heading);
    /// The same, in a box to the right of the last group, which gets the room that is left.
    void groupBeside(std::string_view heading);
    /// Everything added after this stands in the page again.
    void endGroup();

    /// A check option on a line of its own.
    void check(std::string_view control);
    /// Radio options beside each other, one group.
    void radios(std::initializer_list<std::string_view> controls);
    /// A check option followed by a number and a text behind it, on one line.
    void checkWithSpin(std::string_view checkControl, std::string_view spinControl);
    /// Caption and control of any other option, with its unit or another text behind it; such rows stand in columns
    /// below each other.
    void row(std::string_view control, std::string_view unit = {});
    /// One more window in the last row.
    void behind(wxWindow* window);
    /// A row with a button behind the control.
    void rowWithButton(std::string_view control, const char* buttonName, const char* caption);
    /// Two options in one row: the second's caption stands before it.
    void rowOfTwo(std::string_view first, std::string_view second, std::string_view unit);
    /// Explanation, wrapped.
    void note(std::string_view text);
    /// Any other window.
    void add(wxWindow* window, bool grow = false);
    void button(const char* name, const char* caption);

    /// Where the parent of new windows is: the page, or the box of the group.
    [[nodiscard]] wxWindow* place() const { return place_; }

private:
    wxWindow* make(std::string_view control, long style = 0);
    wxWindow* caption(std::string_view control);
    wxWindow* unitText(std::string_view unit);
    wxString withAccessKey(std::string_view caption);
    wxButton* namedButton(const char* name, const char* caption);
    wxFlexGridSizer* rows();
    void line(wxSizer* content);
    /// Below what stands there already, with a gap.
    template <class Item>
    void append(Item* item, int proportion = 0);
    void openGroup(wxSizer& parent, std::string_view heading, int proportion);

    wxBoxSizer* column_;
    wxSizer* current_;
    wxSizer* groups_ = nullptr;  ///< the last group and those beside it
    wxWindow* place_;
    wxFlexGridSizer* rows_ = nullptr;
    wxBoxSizer* cell_ = nullptr;  ///< of the last row
    std::set<wxChar> keys_;
};

/// The pages of the dialog, in their order; the parent owns them.
std::vector<OptionsPage*> makeOptionsPages(wxWindow* parent);

}  // namespace glimmer
