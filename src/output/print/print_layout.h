#pragma once

#include "common/geometry.h"
#include "output/print/print_paper.h"

namespace glimmer {

struct PrintMargins {
    double top = 1;
    double bottom = 1;
    double left = 1;
    double right = 1;
};

/// What of a layout is kept from one print to the next. Lengths are inches.
struct PrintWishes {
    PrintMargins margins;
    bool centre = true;
    bool fit = true;
    bool split = false;     ///< over as many sheets as it takes
    bool footLine = false;  ///< address, title, date and page number at the foot of each sheet
    double scale = 100;     ///< percent, where it is not fitted
    double left = 1;        ///< of the picture on the sheet, where it is not centred
    double top = 1;
    double overlap = 0.25;  ///< what two sheets of a split picture both show
};

/// Where a picture lies on a sheet of paper. At 100 % each of its pixels is one dot of the printer. Fitted, it is as
/// large as the area inside the margins allows, larger than 100 % too. The area never reaches what the printer cannot
/// print. Split over sheets, the picture is at most as wide as the area and begins at its top.
///
/// Every change keeps the rest in step: fitting follows margins and paper, centring follows size, a size or scale of
/// one's own ends fitting, a place of one's own ends centring.
class PrintLayout {
public:
    /// A picture of at least 1 x 1 pixels.
    PrintLayout(Size picture, const PrintPaper& paper, const PrintWishes& wishes);

    [[nodiscard]] Size picture() const { return picture_; }
    [[nodiscard]] const PrintPaper& paper() const { return paper_; }
    /// For the next print; scale and place as they are now.
    [[nodiscard]] const PrintWishes& wishes() const { return wishes_; }

    /// Another printer or sheet; a size of one's own stays as long as it is.
    void setPaper(const PrintPaper& paper);
    void setMargins(const PrintMargins& margins);  ///< negative ones are 0
    void setCentre(bool centre);
    void setFit(bool fit);
    void setSplit(bool split);
    void setFootLine(bool footLine);
    void setOverlap(double inches);  ///< 0 to 2

    /// The upper left corner; a part of the picture stays on the sheet.
    void setPlace(double left, double top);
    /// The proportions stay as they are.
    void setWidth(double inches);
    void setHeight(double inches);
    /// Both sides, whatever the proportions.
    void setSize(double width, double height);
    /// Of the natural size; brings the picture's own proportions back.
    void setScale(double percent);
    /// Of the width.
    [[nodiscard]] double scale() const;

    /// Inside the margins, what the printer reaches, and above the foot line.
    [[nodiscard]] InchRect area() const;
    /// The whole picture; split, it goes on below the sheet.
    [[nodiscard]] InchRect place() const;
    /// Where the foot line goes; below area().
    [[nodiscard]] InchRect footPlace() const;

private:
    [[nodiscard]] double naturalWidth() const { return picture_.width / paper_.dotsPerInchX; }
    [[nodiscard]] double naturalHeight() const { return picture_.height / paper_.dotsPerInchY; }
    void resize(double width, double height);
    void update();

    Size picture_;
    PrintPaper paper_;
    PrintWishes wishes_;
    double width_ = 0;
    double height_ = 0;
};

}  // namespace glimmer
