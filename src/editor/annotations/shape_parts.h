#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "common/bitmap.h"
#include "common/geometry.h"
#include "editor/annotations/shape_geometry.h"
#include "editor/annotations/shape_settings.h"

// The four parts of an annotation. They are values: plain data that TBBShape owns and copies. What a part needs to
// know of the others (the line joins two of them) it asks of its owner.

namespace glimmer {

class TBBShape;

/// How near a press must come to thin things, in image pixels; the canvas divides by its zoom.
struct HitReach {
    int32_t line = 4;  ///< beyond a frame, a line or ink
};

/// What the four parts have in common.
class TDrawObject {
public:
    virtual ~TDrawObject() = default;

    /// The smallest rectangle around everything that the part paints, shadow excluded. Empty when it paints nothing.
    virtual void boundingRect(const TBBShape& owner, Rect& rect) const = 0;
    /// A press at `point`: true when the part took it. A hidden part takes none. With a grabbed handle the press
    /// begins a resize wherever it falls; otherwise it must hit what is painted and begins a move.
    virtual bool mouseDown(TBBShape& owner, Point point, const HitReach& reach);
    /// The mouse came to `point` with the button held: resizes by the grabbed handle, or moves.
    virtual void mouseMove(TBBShape& owner, Point point) = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;
    virtual void setVisible(bool visible) = 0;
    /// Whether the point hits what the part paints. Does not look at visibility.
    [[nodiscard]] virtual bool hit(const TBBShape& owner, Point point, const HitReach& reach) const = 0;

    /// Handle that is held, 0 to 7, or noHandle.
    [[nodiscard]] int32_t activeHandle() const { return activeHandle_; }
    /// Grabs a handle; asserts on a number that is none.
    void grabHandle(int32_t handle);
    /// Ends a drag: lets go of the handle and puts right what the drag turned over.
    virtual void release(TBBShape& owner);
    /// Forgets the drag and leaves everything where it has come to.
    void letGo();
    /// Whether a press was taken and not yet released.
    [[nodiscard]] bool dragging() const { return dragging_; }

protected:
    TDrawObject() = default;
    TDrawObject(const TDrawObject&) = default;
    TDrawObject& operator=(const TDrawObject&) = default;
    TDrawObject(TDrawObject&&) = default;
    TDrawObject& operator=(TDrawObject&&) = default;

    /// The way from the last point of the drag to this one.
    Point step(Point point);
    /// `rect` with the held handle dragged to `point`; asserts that one is held.
    [[nodiscard]] Rect resized(Point point) const;

    // The drag under way; no part of the annotation's value.
    int32_t activeHandle_ = noHandle;
    bool dragging_ = false;
    Point pressedAt_;  ///< where the drag began
    Point lastAt_;     ///< where it has come to
    Rect startRect_;   ///< the part's rectangle when the drag began
};

class TShapeObject : public TDrawObject {
public:
    TShapeSettings settings;
    Rect rectangle;  ///< image pixels; inverted only while a handle is dragged
    /// Free-hand ink, only for kind Drawing: 32 bits with alpha, stretched to the rectangle. Shared and never
    /// changed, so that copies of the annotation cost nothing.
    std::shared_ptr<const TBitmap> drawing;

    [[nodiscard]] bool isFilled() const;
    [[nodiscard]] bool isEllipse() const;
    void boundingRect(const TBBShape& owner, Rect& rect) const override;
    bool mouseDown(TBBShape& owner, Point point, const HitReach& reach) override;
    void mouseMove(TBBShape& owner, Point point) override;
    [[nodiscard]] bool isVisible() const override { return settings.visible; }
    void setVisible(bool visible) override { settings.visible = visible; }
    [[nodiscard]] bool hit(const TBBShape& owner, Point point, const HitReach& reach) const override;
    void release(TBBShape& owner) override;
    /// Settings, rectangle and the drawing's pixels; a drag under way does not count.
    bool operator==(const TShapeObject& other) const;
};

/// Blank pixels between a label's edge and its text.
constexpr int32_t labelPaddingX = 6;
constexpr int32_t labelPaddingY = 4;

class TTextObject : public TDrawObject {
public:
    TTextSettings settings;
    Rect rectangle;    ///< the label; all 0 until its text was first measured
    std::string text;  ///< plain; lines end in "\n"

    /// The part of the label in which text is laid out.
    [[nodiscard]] static Rect textArea(const Rect& label);
    /// The label around a text of the given size.
    [[nodiscard]] static Size labelSize(Size text);

    void boundingRect(const TBBShape& owner, Rect& rect) const override;
    bool mouseDown(TBBShape& owner, Point point, const HitReach& reach) override;
    void mouseMove(TBBShape& owner, Point point) override;
    [[nodiscard]] bool isVisible() const override { return settings.visible; }
    void setVisible(bool visible) override { settings.visible = visible; }
    [[nodiscard]] bool hit(const TBBShape& owner, Point point, const HitReach& reach) const override;
    void release(TBBShape& owner) override;
    bool operator==(const TTextObject& other) const;
};

class TLineObject : public TDrawObject {
public:
    TLineSettings settings;

    void boundingRect(const TBBShape& owner, Rect& rect) const override;
    void mouseMove(TBBShape& owner, Point point) override;
    [[nodiscard]] bool isVisible() const override { return settings.visible; }
    void setVisible(bool visible) override { settings.visible = visible; }
    [[nodiscard]] bool hit(const TBBShape& owner, Point point, const HitReach& reach) const override;
    bool operator==(const TLineObject& other) const { return settings == other.settings; }
};

class TNumberObject : public TDrawObject {
public:
    TNumberSettings settings;
    int32_t number = 0;  ///< the annotation's step number

    [[nodiscard]] Rect badge(const TBBShape& owner) const;

    void boundingRect(const TBBShape& owner, Rect& rect) const override;
    void mouseMove(TBBShape& owner, Point point) override;
    [[nodiscard]] bool isVisible() const override { return settings.visible; }
    void setVisible(bool visible) override { settings.visible = visible; }
    [[nodiscard]] bool hit(const TBBShape& owner, Point point, const HitReach& reach) const override;
    bool operator==(const TNumberObject& other) const { return settings == other.settings && number == other.number; }
};

}  // namespace glimmer
