#pragma once

#include <QVector>

#include <vector>

class TiffData;

// The box sums of every frame of a stack at the centres of one image row,
// for walks that go down the image row by row. Each integer frame keeps the
// sums of the box's rows for every column the row's boxes reach; moving down
// adds the rows that enter and takes off the rows that leave, and a running
// sum along the row gives each box in two reads. Integers add up exactly, so
// every sum equals TiffData::boxSum to the bit. Float frames would round
// differently; their boxes are summed directly, as boxSum does.
//
// Each move takes the sums of the whole row at once and keeps them centre by
// centre, the frames side by side: a point's spectrum then reads one short
// run of memory instead of two places in every frame's lists.
//
// Frames of 8- and 16-bit pixels keep their column sums in 32 bits whenever
// a whole box fits in 31: the running sums may wrap, but a box is the
// difference of two of them, and that comes out exact in unsigned arithmetic.
// Per frame it holds one such number per column reached (two 64-bit ones for
// wider pixels): far less than the frame itself. One object serves one thread.
class BoxRowSums
{
public:
    // The frames (in the order sum() numbers them), the box's half widths
    // (their magnitudes count), and the centres a row will ask for,
    // xFirst..xLast. The row is unset until moveTo().
    void setUp(const QVector<TiffData *> &frames, int hw, int vw, int xFirst, int xLast);
    // Takes the boxes centred on row y.
    void moveTo(int y);
    // The box sum of frame k centred on (x, y of the last moveTo), 0 before
    // the first move; x must lie in xFirst..xLast.
    double sum(int k, int x) const { return m_box[size_t(x - m_xFirst) * m_frames.size() + size_t(k)]; }
    // sum(k, x) of every frame k, at [k], for the point's spectrum; valid
    // until the next moveTo or setUp.
    const double *sums(int x) const { return m_box.data() + size_t(x - m_xFirst) * m_frames.size(); }
    int frameCount() const { return int(m_frames.size()); }

private:
    struct Frame
    {
        const TiffData *frame = nullptr;
        qint64 shiftX = 0;           // the frame's, read once
        bool direct = false;         // float pixels: summed box by box
        bool narrow = false;         // column sums in col32, else in col64
        qint64 c0 = 0, c1 = -1;      // frame columns kept, ends included
        qint64 r0 = 0, r1 = -1;      // frame rows in the column sums
        std::vector<quint32> col32;  // per kept column, the sum of rows r0..r1
        std::vector<qint64> col64;
        qint64 columns() const { return c1 - c0 + 1; }
    };
    void moveFrame(Frame &f, qint64 fy);
    // The box sum centred on x from the running sums of the frame's columns.
    template <typename S>
    double frameSum(const Frame &f, const S *run, int x) const;
    // The frame's box sums of every centre, along the row.
    void frameRow(const Frame &f, double *row);
    template <typename S>
    void boxesAlong(const Frame &f, const S *col, S *run, double *row) const;

    std::vector<Frame> m_frames;
    std::vector<double> m_box;  // per centre, the sums of every frame
    std::vector<double> m_rows; // a block of frames' rows, on their way into m_box
    // The running sums of the frame in hand: run[i] = col[0] + ... + col[i - 1].
    std::vector<quint32> m_run32;
    std::vector<qint64> m_run64;
    int m_hw = 0;
    int m_vw = 0;
    qint64 m_h = 0;
    qint64 m_v = 0;
    int m_y = 0;
    int m_xFirst = 0;
    int m_xLast = -1;
};
