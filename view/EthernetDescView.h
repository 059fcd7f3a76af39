#pragma once

#include "view/DescSection.h"
#include "view/IEthernetDescView.h"

namespace TavNA {

// The tag rows appear only for a stream that carries the tag.
class EthernetDescView : public IEthernetDescView, public DescSection {
public:
    enum Row { DstMac, SrcMac, HsrId, HsrLine, VlanId, PrpId, PrpLine };

    EthernetDescView();
    void setSrcMac(const std::string& text) override;
    void setDstMac(const std::string& text) override;
    void setHsrId(const std::string& text) override;
    void setHsrLine(const std::string& text) override;
    void setVlanId(const std::string& text) override;
    void setPrpId(const std::string& text) override;
    void setPrpLine(const std::string& text) override;
    void clear() override;

private:
    void _setTagRow(Row row, const std::string& text);
};

} // namespace TavNA
