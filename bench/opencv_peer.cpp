#include "opencv_peer.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace glimmer::bench {

void opencvBlur(const TBitmap& from, TBitmap& to, double radius, int kernelSize) {
    cv::setNumThreads(1);
    // OpenCV does not write to its source, whatever the type of the pointer says.
    const cv::Mat source(from.height(), from.width(), CV_8UC3, const_cast<uint8_t*>(from.row(0)), from.stride());
    cv::Mat target(to.height(), to.width(), CV_8UC3, to.row(0), to.stride());
    const int taps = 2 * kernelSize + 1;
    cv::GaussianBlur(source, target, cv::Size(taps, taps), radius, radius, cv::BORDER_REPLICATE);
}

}  // namespace glimmer::bench
