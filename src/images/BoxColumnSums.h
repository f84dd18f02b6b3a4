#pragma once

#include <QVector>

#include <vector>

class TiffData;

// The box sums of every frame of a stack at the centres of one image column,
// for sections that follow the pointer sideways: the
// counterpart of BoxRowSums for columns. Each integer frame keeps, per frame
// row, the sum of the box's columns; moving sideways adds the columns that
// enter and takes off those that leave, and a running sum down the column
// gives each box in two reads. Integers add up exactly, so every sum equals
// TiffData::boxSum to the bit; float frames are summed box by box.
class BoxColumnSums
{
public:
    void setUp(const QVector<TiffData *> &frames, int hw, int vw);
    // Takes the boxes centred on column x.
    void moveTo(int x);
    // The box sum of frame k centred on (x of the last moveTo, y).
    double sum(int k, int y) const;

private:
    struct Frame
    {
        const TiffData *frame = nullptr;
        bool direct = false;
        qint64 c0 = 0, c1 = -1;  // frame columns in the row sums, ends included
        std::vector<qint64> row; // per frame row, the sum of columns c0..c1
        std::vector<qint64> run; // run[r] = row[0] + ... + row[r - 1]
    };
    void moveFrame(Frame &f, qint64 fx);

    std::vector<Frame> m_frames;
    int m_hw = 0;
    int m_vw = 0;
    qint64 m_h = 0;
    qint64 m_v = 0;
    int m_x = 0;
};
