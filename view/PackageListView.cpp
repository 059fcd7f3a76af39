#include "view/PackageListView.h"

#include "platform/view/GtkWidgetHelper.h"
#include "view/ISelectable.h"

namespace TavNA {

PackageListView::Section::Section(const std::string& title) : label(title) {
    label.set_halign(Gtk::ALIGN_START);
    expander.set_label_widget(label);
    expander.add(streams);
    expander.set_expanded(true);
}

PackageListView::PackageListView() : Gtk::Box(Gtk::ORIENTATION_VERTICAL) {
    listBox = _makeListBox();
    pack_start(*listBox, true, true);
    show_all();
}

// The sections are members: they must leave their parents before they go.
PackageListView::~PackageListView() {
    _takeOut(svSection);
    _takeOut(gooseSection);
    _takeOut(absentSection);
}

std::unique_ptr<Gtk::Box> PackageListView::_makeListBox() {
    auto box = std::make_unique<Gtk::Box>(Gtk::ORIENTATION_VERTICAL);
    box->get_style_context()->add_class("packageList");
    box->set_hexpand(true);
    box->set_vexpand(true);
    return box;
}

void PackageListView::_takeOut(Section& section) {
    if (auto* parent = section.expander.get_parent())
        parent->remove(section.expander);
}

void PackageListView::_putSection(Section& section, const std::string& text) {
    _takeOut(section);
    // An empty title keeps the one the section already shows.
    if (!text.empty())
        section.label.set_text(text);
    listBox->pack_start(section.expander, false, false, 0);
    show_all();
}

void PackageListView::setSVproto(const std::string& text) {
    _putSection(svSection, text);
}

void PackageListView::setGooseProto(const std::string& text) {
    _putSection(gooseSection, text);
}

void PackageListView::_addStream(Section& section, Tav::IView* view) {
    Gtk::Widget* widget = Tav::GtkWidgetHelper::toWidget(view);
    if (widget == nullptr)
        return;
    section.streams.pack_start(*widget, false, false, 0);
    section.streams.show_all();
}

void PackageListView::addSvStream(Tav::IView* view) {
    _addStream(svSection, view);
    show_all();
}

void PackageListView::addGooseStream(Tav::IView* view) {
    _addStream(gooseSection, view);
    show_all();
}

void PackageListView::_unselectAll(Section& section) {
    for (Gtk::Widget* child : section.streams.get_children())
        if (auto* item = dynamic_cast<ISelectable*>(child))
            item->unselect();
}

void PackageListView::unselectItems() {
    _unselectAll(gooseSection);
    _unselectAll(svSection);
}

void PackageListView::setAbsent(const std::vector<std::string>& lines) {
    for (Gtk::Widget* child : absentSection.streams.get_children())
        absentSection.streams.remove(*child);
    absentLabels.clear();
    _takeOut(absentSection);
    if (lines.empty())
        return;
    for (const std::string& line : lines) {
        absentLabels.push_back(std::make_unique<Gtk::Label>(line));
        absentLabels.back()->set_halign(Gtk::ALIGN_START);
        absentSection.streams.pack_start(*absentLabels.back(), false, false, 0);
    }
    _putSection(absentSection, "Нет в захвате (" + std::to_string(lines.size()) + ")");
}

std::vector<std::string> PackageListView::absentLines() const {
    std::vector<std::string> lines;
    for (const auto& label : absentLabels)
        lines.push_back(label->get_text());
    return lines;
}

void PackageListView::clear() {
    _takeOut(svSection);
    _takeOut(gooseSection);
    setAbsent({});
    for (Section* section : {&svSection, &gooseSection})
        for (Gtk::Widget* child : section->streams.get_children())
            section->streams.remove(*child);
    remove(*listBox);
    listBox = _makeListBox();
    pack_start(*listBox, true, true);
    show_all();
}

} // namespace TavNA
