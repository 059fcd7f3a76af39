#pragma once

#include "platform/view/ExtendedExpander.h"
#include "view/IPackageListView.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <memory>
#include <vector>

namespace TavNA {

class PackageListView : public IPackageListView, public Gtk::Box {
public:
    PackageListView();
    ~PackageListView() override;

    void setSVproto(const std::string& text) override;
    void setGooseProto(const std::string& text) override;
    void clear() override;
    void addSvStream(Tav::IView* view) override;
    void addGooseStream(Tav::IView* view) override;
    void unselectItems() override;
    void setAbsent(const std::vector<std::string>& lines) override;
    // The absent streams' lines as shown.
    std::vector<std::string> absentLines() const;

private:
    // One protocol's collapsible section and the box of its stream views.
    struct Section {
        explicit Section(const std::string& title);
        Tav::ExtendedExpander expander;
        Gtk::Label label;
        Gtk::Box streams{Gtk::ORIENTATION_VERTICAL};
    };

    void _putSection(Section& section, const std::string& text);
    void _takeOut(Section& section);
    static void _addStream(Section& section, Tav::IView* view);
    static void _unselectAll(Section& section);
    static std::unique_ptr<Gtk::Box> _makeListBox();

    std::unique_ptr<Gtk::Box> listBox;
    Section svSection{"SV"};
    Section gooseSection{"GOOSE"};
    Section absentSection{"Нет в захвате"};
    std::vector<std::unique_ptr<Gtk::Label>> absentLabels;
};

} // namespace TavNA
