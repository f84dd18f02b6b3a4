#include "batch/ExCmdId.h"

#include <QHash>
#include <QVector>

namespace {

struct ExCmdRow {
    EX_CMD_ID id;
    const char *text;
};

// Rows in id order: the reverse look-up indexes by id.
constexpr ExCmdRow kRows[] = {
        {CLEAR_I1_FILES, "clear_I1_files"},
        {CLEAR_I0_FILES, "clear_I0_files"},
        {SET_I1_ENERGY_PATTERN, "set_i1_energy_pattern"},
        {SET_I0_ENERGY_PATTERN, "set_i0_energy_pattern"},
        {LOAD_I1_FILES, "load_I1_files"},
        {LOAD_I0_FILES, "load_I0_files"},
        {LOAD_I1_FILES_OF_PATTERN, "load_I1_files_of_pattern"},
        {LOAD_I0_FILES_OF_PATTERN, "load_I0_files_of_pattern"},
        {USE_I0, "Use_I0"},
        {CUT_F_I0, "cut_f_i0"},
        {CUT_F_I1, "cut_f_i1"},
        {CUT_L_I0, "cut_l_i0"},
        {CUT_L_I1, "cut_l_i1"},
        {SKIP_I0, "skip_i0"},
        {SKIP_I1, "skip_i1"},
        {SHOW_LATEST_I0, "show_latest_i0"},
        {SHOW_LATEST_I1, "show_latest_i1"},
        {ENG_BY_NAME_I0, "eng_by_name_i0"},
        {ENG_BY_NAME_I1, "eng_by_name_i1"},
        {ENG_BY_NAME_REG_EXP_I0, "eng_by_name_reg_exp_i0"},
        {ENG_BY_NAME_REG_EXP_I1, "eng_by_name_reg_exp_i1"},
        {ENG_BY_NAME_FACTOR_I0, "eng_by_name_factor_i0"},
        {ENG_BY_NAME_FACTOR_I1, "eng_by_name_factor_i1"},
        {ENG_BY_CALC_I0, "eng_by_calc_i0"},
        {ENG_BY_CALC_I1, "eng_by_calc_i1"},
        {ENG_CALC_BASE_I0, "eng_calc_base_i0"},
        {ENG_CALC_BASE_I1, "eng_calc_base_i1"},
        {ENG_CALC_DELTA_I0, "eng_calc_delta_i0"},
        {ENG_CALC_DELTA_I1, "eng_calc_delta_i1"},
        {ENG_CALC_END_I0, "eng_calc_end_i0"},
        {ENG_CALC_END_I1, "eng_calc_end_i1"},
        {ENG_CALC_NUM_I0, "eng_calc_num_i0"},
        {ENG_CALC_NUM_I1, "eng_calc_num_i1"},
        {ENG_CALC_EVEN_IN_ENG_I0, "eng_calc_even_in_eng_i0"},
        {ENG_CALC_EVEN_IN_ENG_I1, "eng_calc_even_in_eng_i1"},
        {ENG_CALC_EVEN_IN_DEG_I0, "eng_calc_even_in_deg_i0"},
        {ENG_CALC_EVEN_IN_DEG_I1, "eng_calc_even_in_deg_i1"},
        {ENG_CALC_DISP_UNIT_I0, "eng_calc_disp_unit_i0"},
        {ENG_CALC_DISP_UNIT_I1, "eng_calc_disp_unit_i1"},
        {ENG_BY_REF_I0, "eng_by_ref_i0"},
        {ENG_BY_REF_I1, "eng_by_ref_i1"},
        {SET_FLUO_TYPE, "set_fluo_type"},
        {SUGGEST_ELM, "Suggest_Elm"},
        {SUGGESTING_ELM, "Suggesting_Elm"},
        {SUGGESTING_EDGE, "Suggesting_Edge"},
        {SUGGESTING_EDGE_EV, "Suggesting_Edge_eV"},
        {SUGGESTING_PRE_END_EV, "Suggesting_Pre_End_eV"},
        {SUGGESTING_POST_START_EV, "Suggesting_Post_Start_eV"},
        {SET_I0_DARK_AREA, "set_i0_dark_area"},
        {SET_I1_DARK_AREA, "set_i1_dark_area"},
        {CLEAR_I0_DARK_AREA, "clear_i0_dark_area"},
        {CLEAR_I1_DARK_AREA, "clear_i1_dark_area"},
        {SET_BAND_W, "set_band_w"},
        {SET_BAND_H, "set_band_h"},
        {SET_VIEW_W, "set_view_w"},
        {SET_VIEW_H, "set_view_h"},
        {SET_ANALYZE_W, "set_analyze_w"},
        {SET_ANALYZE_H, "set_analyze_h"},
        {SELECT_DISP_IMAGE, "select_disp_image"},
        {SELECT_DISP_IMAGE_I1, "select_disp_image_i1"},
        {SELECT_DISP_IMAGE_I0, "select_disp_image_i0"},
        {SELECT_DISP_IMAGE_ESHIFT, "select_disp_image_eShift"},
        {SELECT_DISP_IMAGE_ANALYZED, "select_disp_image_analyzed"},
        {SEEK_IMAGE, "seek_image"},
        {SAVE_IMAGE, "save_image"},
        {SAVE_IMAGE_W_NUM, "save_image_w_num"},
        {SAVE_ALL_IMAGES, "save_all_images"},
        {SAVE_DATA, "save_data"},
        {SAVE_DATA_AS_TIFF, "save_data_as_tiff"},
        {MOVE_POSITION, "move_position"},
        {SAVE_SPECTRA, "save_spectra"},
        {CBAR_SET_RANGE, "cbar_set_range"},
        {CBAR_SET_ALL, "cbar_set_all"},
        {SELECT_REGION, "select_region"},
        {SCALE_RESET, "scale_reset"},
        {ZOOM_IN, "zoom_in"},
        {SELECT_QS_FITTED_ESHIFT, "select_qs_fitted_eShift"},
        {XAFS_VIEW_NORMALIZE, "xafs_view_normalize"},
        {XAFS_VIEW_ENERUGY_CORRECTION, "xafs_view_enerugy_correction"},
        {ANALYZER_SHOW_WINDOW, "analyzer_show_window"},
        {ANALYZER_SELECT_ANALYSIS_MODE, "analyzer_select_analysis_mode"},
        {ANALYZER_MAIN_MODE, "analyzer_main_mode"},
        {ANALYZER_SUB_MODE, "analyzer_sub_mode"},
        {ANALYZER_SELECT_MAIN_MODE_2DA, "analyzer_select_main_mode_2da"},
        {ANALYZER_SELECT_SUB_MODE_DEDGE, "analyzer_select_sub_mode_dEdge"},
        {ANALYZER_SELECT_SUB_MODE_LCF, "analyzer_select_sub_mode_LCF"},
        {ANALYZER_SELECT_SUB_MODE_ELEMS, "analyzer_select_sub_mode_elems"},
        {ANALYZER_SELECT_SUB_MODE_RA, "analyzer_select_sub_mode_ra"},
        {ANALYZER_SELECT_MAIN_MODE_SUMUP, "analyzer_select_main_mode_sumUp"},
        {ANALYZER_SELECT_MAIN_MODE_PROCMAPS, "analyzer_select_main_mode_procMaps"},
        {ANALYZER_VIEW_NORMALIZE, "analyzer_view_normalize"},
        {ANALYZER_VIEW_ENERUGY_CORRECTION, "analyzer_view_enerugy_correction"},
        {ANALYZER_SELECT_IMAGE, "analyzer_select_image"},
        {ANALYZER_SET_FIXED_SCALE, "analyzer_set_fixed_scale"},
        {ANALYZER_SET_SCALE_MAX, "analyzer_set_scale_max"},
        {ANALYZER_SET_SCALE_MIN, "analyzer_set_scale_min"},
        {ANALYZER_SET_DMUT_SCALE_MAX, "analyzer_set_dMut_scale_max"},
        {ANALYZER_SET_DMUT_SCALE_MIN, "analyzer_set_dMut_scale_min"},
        {ANALYZER_SET_RATIO_SCALE_MAX, "analyzer_set_ratio_scale_max"},
        {ANALYZER_SET_RATIO_SCALE_MIN, "analyzer_set_ratio_scale_min"},
        {ANALYZER_EXEC_2DA, "analyzer_exec_2da"},
        {ANALYZER_DEDGE_SELECT_MODE, "analyzer_dEdge_select_mode"},
        {ANALYZER_DEDGE_SELECT_MODE_MIDP, "analyzer_dEdge_select_mode_midp"},
        {ANALYZER_DEDGE_SELECT_MODE_COMP, "analyzer_dEdge_select_mode_comp"},
        {ANALYZER_DEDGE_MID_POINT_RATIO, "analyzer_dEdge_mid_point_ratio"},
        {ANALYZER_DEDGE_COMP_TARGET, "analyzer_dEdge_comp_target"},
        {ANALZYER_DEDGE_COMP_W_FILE, "analzyer_dEdge_comp_w_file"},
        {ANALYZER_DEDGE_COMP_FILE_NAME, "analyzer_dEdge_comp_file_name"},
        {ANALYZER_DEDGE_COMP_W_STEP, "analyzer_dEdge_comp_w_step"},
        {ANALYZER_DEDGE_COMP_STEP_PARAMS, "analyzer_dEdge_comp_step_params"},
        {ANALYZER_DEDGE_COMP_PARAMS, "analyzer_dEdge_comp_params"},
        {ANALYZER_SET_LCF_STD, "analyzer_set_LCF_std"},
        {ANALYZER_SET_LCF_MODE, "analyzer_set_LCF_mode"},
        {ANALYZER_SET_MLCF, "analyzer_set_MLCF"},
        {ANALYZER_SET_LCF_AS_OLD, "analyzer_set_LCF_as_old"},
        {ANALYZER_SELECT_IMAGE_TYPE, "analyzer_select_image_type"},
        {ANALYZER_EXEC_LCF, "analyzer_exec_LCF"},
        {ANALYZER_SET_LCF_RANGE, "analyzer_set_LCF_range"},
        {ANALYZER_TARGET_ELEMENTS, "analyzer_target_elements"},
        {ANALYZER_ELEMS_SELECT_TARGET, "analyzer_elems_select_target"},
        {ANALYZER_ELEMS_SORT_BY_AN, "analyzer_elems_sort_by_an"},
        {ANALYZER_ELEMS_SELECT_SHOW, "analyzer_elems_select_show"},
        {ANALYZER_ELEMS_SET_DEVS, "analyzer_elems_set_deVs"},
        {ANALYZER_ELEMS_SET_CORR_TH, "analyzer_elems_set_corr_th"},
        {ANALYZER_ELEMS_SELECT_DISP_MODE, "analyzer_elems_select_disp_mode"},
        {ANALYZER_ELEMS_SET_USE, "analyzer_elems_set_use"},
        {ANALYZER_ELEMS_ROI, "analyzer_elems_roi"},
        {ANALYZER_ELEMS_THDMUT, "analyzer_elems_thdmut"},
        {ANALYZER_ELEMS_NO_NEG, "analyzer_elems_no_neg"},
        {ANALYZER_ELEMS_BG_DMUT, "analyzer_elems_bg_dMut"},
        {ANALYZER_ELEMS_BG_DMUTR, "analyzer_elems_bg_dMutR"},
        {ANALYZER_ELEMS_BG_DE, "analyzer_elems_bg_dE"},
        {ANALYZER_ELEMS_BG_ROI, "analyzer_elems_bg_ROI"},
        {ANALYZER_ELEMS_BG_NROI, "analyzer_elems_bg_NROI"},
        {ANALYZER_EXEC_ELEMS, "analyzer_exec_elems"},
        {ANALYZER_SET_RA_ENERGY, "analyzer_set_ra_energy"},
        {ANALYZER_SET_RA_FACTOR, "analyzer_set_ra_factor"},
        {ANALYZER_EXEC_RA, "analyzer_exec_ra"},
        {CALIB_SHOW_WINDOW, "calib_show_window"},
        {CALIB_LOAD_STD, "calib_load_std"},
        {CALIB_SET_EDGE_EV, "calib_set_edge_eV"},
        {CALIB_EXEC, "calib_exec"},
        {CALIB_LOAD_MAP, "calib_load_map"},
        {CALIB_CLEAR_MAP, "calib_clear_map"},
        {CALIB_SAVE_MAP, "calib_save_map"},
        {CALIB_TYPE, "calib_type"},
        {STATS_SHOW_WINDOW, "stats_show_window"},
        {STATS_BINS, "stats_bins"},
        {STATS_OVER_IMAGE, "stats_over_image"},
        {STATS_IN_SELECTED_REGION, "stats_in_selected_region"},
        {SAVEDATACFG_SHOW_WINDOW, "saveDataCfg_show_window"},
        {SAVEDATACFG_SAVE_AS_TIFF, "saveDataCfg_save_as_tiff"},
        {SAVEDATACFG_SAVE_AS_TEXT, "saveDataCfg_save_as_text"},
        {SAVEDATACFG_TIFF_FIX_SCALE, "saveDataCfg_tiff_fix_scale"},
        {SAVEDATACFG_TIFF_SCALE_MIN, "saveDataCfg_tiff_scale_min"},
        {SAVEDATACFG_TIFF_SCALE_MAX, "saveDataCfg_tiff_scale_max"},
        {SAVEDATACFG_TIFF_AS_ANALYZED, "saveDataCfg_tiff_as_analyzed"},
        {SAVEDATACFG_TEXT_AS_CSV, "saveDataCfg_text_as_csv"},
        {SAVEDATACFG_TEXT_AS_SSV, "saveDataCfg_text_as_ssv"},
        {SAVEDATACFG_TEXT_AS_XYZ, "saveDataCfg_text_as_xyz"},
        {SAVEDATACFG_TEXT_AS_VALS, "saveDataCfg_text_as_vals"},
        {QUIT, "quit"},
        {NOT_EX_CMD, "not ex cmd"},
        {LOAD_I1_H5, "load_I1_h5"},
        {LOAD_I0_H5, "load_I0_h5"},
};

constexpr int kRowCount = int(sizeof(kRows) / sizeof(kRows[0]));

constexpr bool rowsInIdOrder()
{
    for (int i = 0; i < kRowCount; ++i) {
        if (kRows[i].id != i)
            return false;
    }
    return true;
}
static_assert(kRowCount == LOAD_I0_H5 + 1, "one row per command id");
static_assert(rowsInIdOrder(), "rows must stand in id order");

struct ExCmdTable {
    QHash<QString, EX_CMD_ID> byUpperWord;
    QVector<QString> byId;

    ExCmdTable()
    {
        byUpperWord.reserve(kRowCount);
        byId.reserve(kRowCount);
        for (const ExCmdRow &r : kRows) {
            const QString text = QString::fromLatin1(r.text);
            byUpperWord.insert(text.toUpper(), r.id);
            byId.append(text);
        }
    }
};

// A function-local static is built once and thread-safely, which matters
// because the batch thread and the main thread both look words up.
const ExCmdTable &table()
{
    static const ExCmdTable t;
    return t;
}

} // namespace

void initExCmdTable()
{
    table();
}

EX_CMD_ID exCmdId(const QString &word)
{
    return table().byUpperWord.value(word.toUpper(), NOT_EX_CMD);
}

QString exCmdText(int id)
{
    const ExCmdTable &t = table();
    if (id < 0 || id >= t.byId.size())
        return QStringLiteral("UnKnow ExCMD id");
    return t.byId.at(id);
}
