// Body's side of the file panels: their titles and the batch commands that
// set their fields.
#include "app/Body.h"

#include "images/SelectDataFiles.h"
#include "ui_Body.h"

namespace {
// Argument forms of the batch commands; a missing argument reads as empty,
// so as 0, off or the empty string.
bool argB(const QStringList &args)
{
    return args.value(0).toInt() == 1;
}

int argI(const QStringList &args)
{
    return args.value(0).toInt();
}

double argD(const QStringList &args)
{
    return args.value(0).toDouble();
}

// Which panel a command addresses. The energy-pattern pair names I1 first;
// from cut_f_i0 on, every pair names I0 first, so the even ids are I1's.
bool addressesI1(EX_CMD_ID id)
{
    if (id == SET_I1_ENERGY_PATTERN || id == SET_I0_ENERGY_PATTERN)
        return id == SET_I1_ENERGY_PATTERN;
    return id % 2 == 0;
}
}

void Body::setupFilePanels()
{
    ui->SelectI1Files->setTitle(tr("I1 Data"));
    ui->SelectI0Files->setTitle(tr("I0 Data"));
}

void Body::execFilePanelCmd(EX_CMD_ID id, const QStringList &args)
{
    SelectDataFiles *p = addressesI1(id) ? ui->SelectI1Files : ui->SelectI0Files;
    switch (id) {
    case SET_I1_ENERGY_PATTERN:
    case SET_I0_ENERGY_PATTERN:
    case ENG_BY_NAME_REG_EXP_I0:
    case ENG_BY_NAME_REG_EXP_I1:
        p->setEngByNameRegExp(args.value(0));
        break;
    case CUT_F_I0:
    case CUT_F_I1:
        p->setCutF(argI(args));
        break;
    case CUT_L_I0:
    case CUT_L_I1:
        p->setCutL(argI(args));
        break;
    case SKIP_I0:
    case SKIP_I1:
        p->setSkip(argI(args));
        break;
    case SHOW_LATEST_I0:
    case SHOW_LATEST_I1:
        p->setShowLatest(argB(args));
        break;
    case ENG_BY_NAME_I0:
    case ENG_BY_NAME_I1:
        // Takes no argument: it always selects the name.
        p->setEngByName(true);
        break;
    case ENG_BY_NAME_FACTOR_I0:
    case ENG_BY_NAME_FACTOR_I1:
        p->setEngByNameFactor(argD(args));
        break;
    case ENG_BY_CALC_I0:
    case ENG_BY_CALC_I1:
        p->setEngByCalc(argB(args));
        break;
    case ENG_CALC_BASE_I0:
    case ENG_CALC_BASE_I1:
        p->setEngCalcStart(argD(args));
        break;
    case ENG_CALC_DELTA_I0:
    case ENG_CALC_DELTA_I1:
        p->setEngCalcDelta(argD(args));
        break;
    case ENG_CALC_END_I0:
    case ENG_CALC_END_I1:
        p->setEngCalcEnd(argD(args));
        break;
    case ENG_CALC_NUM_I0:
    case ENG_CALC_NUM_I1:
        p->setEngCalcNum(argI(args));
        break;
    case ENG_CALC_EVEN_IN_ENG_I0:
    case ENG_CALC_EVEN_IN_ENG_I1:
        p->setEvenInEng(argB(args));
        break;
    case ENG_CALC_EVEN_IN_DEG_I0:
    case ENG_CALC_EVEN_IN_DEG_I1:
        p->setEvenInDeg(argB(args));
        break;
    case ENG_CALC_DISP_UNIT_I0:
    case ENG_CALC_DISP_UNIT_I1:
        p->setDispUnit(argI(args));
        break;
    case ENG_BY_REF_I0:
    case ENG_BY_REF_I1:
        p->setEngByRef(args.value(0));
        break;
    default:
        break;
    }
}
