<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en">
<context>
    <name>AElemsConds</name>
    <message>
        <source>Analyze Elems Conditions</source>
        <translation>元素解析の条件</translation>
    </message>
    <message>
        <source>BG Values : </source>
        <translation>BG値 : </translation>
    </message>
    <message>
        <source>dmut</source>
        <translation>dmut</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Value recorded as dmut, Mut+ and Mut- where the jump is below its threshold</source>
        <translation>ジャンプが閾値未満の点で dmut, Mut+, Mut- に記録する値</translation>
    </message>
    <message>
        <source>dmut-Ratio</source>
        <translation>dmut 比</translation>
    </message>
    <message>
        <source>Background value of the dmut ratio</source>
        <translation>dmut 比のバックグラウンド値</translation>
    </message>
    <message>
        <source>dE</source>
        <translation>dE</translation>
    </message>
    <message>
        <source>Value recorded as dE where the jump is below its threshold</source>
        <translation>ジャンプが閾値未満の点で dE に記録する値</translation>
    </message>
    <message>
        <source>ROI</source>
        <translation>ROI</translation>
    </message>
    <message>
        <source>-1</source>
        <translation>-1</translation>
    </message>
    <message>
        <source>Value recorded as ROI and N.ROI where the jump is below its threshold</source>
        <translation>ジャンプが閾値未満の点で ROI と N.ROI に記録する値</translation>
    </message>
    <message>
        <source>NROI</source>
        <translation>NROI</translation>
    </message>
    <message>
        <source>Background value of the normalised ROI</source>
        <translation>規格化 ROI のバックグラウンド値</translation>
    </message>
</context>
<context>
    <name>Analyzer</name>
    <message>
        <source>Analyzer</source>
        <translation>解析</translation>
    </message>
    <message>
        <source>2D Analysis</source>
        <translation>2次元解析</translation>
    </message>
    <message>
        <source>Analyse the spectrum of every point of the selected area</source>
        <translation>選択領域の各点のスペクトルを解析</translation>
    </message>
    <message>
        <source>Process Maps</source>
        <translation>マップ処理</translation>
    </message>
    <message>
        <source>Combine two captured or loaded maps</source>
        <translation>取り込んだ/読み込んだ二つのマップを演算</translation>
    </message>
    <message>
        <source>Sum Up</source>
        <translation>積算</translation>
    </message>
    <message>
        <source>Show the summed-up image</source>
        <translation>積算画像を表示</translation>
    </message>
    <message>
        <source>Analyze</source>
        <translation>解析</translation>
    </message>
    <message>
        <source>Start the analysis over the selected area (the whole image without a selection); press again to stop</source>
        <translation>選択領域 (選択がなければ画像全体) の解析を開始; もう一度押すと停止</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進捗</translation>
    </message>
    <message>
        <source>0.00</source>
        <translation>0.00</translation>
    </message>
    <message>
        <source>Progress of the run, per cent</source>
        <translation>実行の進捗 (%)</translation>
    </message>
    <message>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <source>Disp. on Time</source>
        <translation>逐次表示</translation>
    </message>
    <message>
        <source>Redraw the maps at the end of every row of the run</source>
        <translation>実行中、各行の終わりにマップを再描画</translation>
    </message>
    <message>
        <source>Sum up the images</source>
        <translation>画像を積算</translation>
    </message>
    <message>
        <source>Show View</source>
        <translation>プロット表示</translation>
    </message>
    <message>
        <source>Show the &quot;Analyzing Spectrum&quot; plot</source>
        <translation>「解析中のスペクトル」のプロットを表示</translation>
    </message>
    <message>
        <source>Analyzer2</source>
        <translation>解析2</translation>
    </message>
    <message>
        <source>Show the quality window</source>
        <translation>品質ウィンドウを表示</translation>
    </message>
    <message>
        <source>Analyses of the run</source>
        <translation>実行する解析</translation>
    </message>
    <message>
        <source>Exec. LCF / MLCF Analysis</source>
        <translation>LCF / MLCF 解析を実行</translation>
    </message>
    <message>
        <source>Fit each point with the reference spectra</source>
        <translation>各点を参照スペクトルでフィット</translation>
    </message>
    <message>
        <source>Exec. Gen dEge Map</source>
        <translation>吸収端マップ作成</translation>
    </message>
    <message>
        <source>Map the edge position of each point</source>
        <translation>各点の吸収端位置をマップ化</translation>
    </message>
    <message>
        <source>Element Analysis</source>
        <translation>元素解析</translation>
    </message>
    <message>
        <source>Map the edge jumps of the named elements</source>
        <translation>指定元素のエッジジャンプをマップ化</translation>
    </message>
    <message>
        <source>Residual Absorption Analysis</source>
        <translation>残留吸収解析</translation>
    </message>
    <message>
        <source>Split the absorption at one energy into the element&apos;s jump and the rest</source>
        <translation>ある一つのエネルギーでの吸光度を元素のジャンプと残りに分ける</translation>
    </message>
    <message>
        <source>Feature Val. Analysis</source>
        <translation>特徴値解析</translation>
    </message>
    <message>
        <source>Map the white-line feature above the edge</source>
        <translation>吸収端上のホワイトラインの特徴をマップ化</translation>
    </message>
    <message>
        <source>LCF / MLCF</source>
        <translation>LCF / MLCF</translation>
    </message>
    <message>
        <source>MLCF</source>
        <translation>MLCF</translation>
    </message>
    <message>
        <source>Fit the raw spectrum with a straight background line and the references</source>
        <translation>生スペクトルを直線バックグラウンドと参照でフィット</translation>
    </message>
    <message>
        <source>as Old</source>
        <translation>旧方式</translation>
    </message>
    <message>
        <source>Fit also where the edge jump is not positive</source>
        <translation>エッジジャンプが正でない点もフィット</translation>
    </message>
    <message>
        <source>Fitting Range: </source>
        <translation>フィット範囲: </translation>
    </message>
    <message>
        <source>(</source>
        <translation>(</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Lower end of the fitting range</source>
        <translation>フィット範囲の下限</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>30000</source>
        <translation>30000</translation>
    </message>
    <message>
        <source>Upper end of the fitting range</source>
        <translation>フィット範囲の上限</translation>
    </message>
    <message>
        <source>)</source>
        <translation>)</translation>
    </message>
    <message>
        <source>[eV]</source>
        <translation>[eV]</translation>
    </message>
    <message>
        <source>Zansa at Cursor</source>
        <translation>カーソル位置の残差</translation>
    </message>
    <message>
        <source>Residual of the fit of the spectrum under the pointer</source>
        <translation>ポインタ位置のスペクトルのフィット残差</translation>
    </message>
    <message>
        <source>Show Zansa Map</source>
        <translation>残差マップ表示</translation>
    </message>
    <message>
        <source>Show the map of the fit residual</source>
        <translation>フィット残差のマップを表示</translation>
    </message>
    <message>
        <source>Add Ref</source>
        <translation>参照追加</translation>
    </message>
    <message>
        <source>Add one more reference panel</source>
        <translation>参照パネルを一つ追加</translation>
    </message>
    <message>
        <source>dEdge</source>
        <translation>dEdge</translation>
    </message>
    <message>
        <source>Show dEge Map</source>
        <translation>吸収端マップ表示</translation>
    </message>
    <message>
        <source>Show the map of the edge position</source>
        <translation>吸収端位置のマップを表示</translation>
    </message>
    <message>
        <source>dEdge at Cursor</source>
        <translation>カーソル位置の dEdge</translation>
    </message>
    <message>
        <source>Edge position of the spectrum under the pointer, relative to the suggested edge</source>
        <translation>ポインタ位置のスペクトルの吸収端位置 (推定吸収端に対して)</translation>
    </message>
    <message>
        <source>Mid Point</source>
        <translation>中点</translation>
    </message>
    <message>
        <source>The edge is where the spectrum crosses the level between the lines</source>
        <translation>スペクトルが線の間の高さを横切る点を吸収端とする</translation>
    </message>
    <message>
        <source>Mid Ratio (a)</source>
        <translation>中点比 (a)</translation>
    </message>
    <message>
        <source>0.5</source>
        <translation>0.5</translation>
    </message>
    <message>
        <source>Fraction of the jump at which the edge is taken</source>
        <translation>吸収端とするジャンプの割合</translation>
    </message>
    <message>
        <source>(Mid = ( Post - Pre ) * a + Pre</source>
        <translation>(Mid = ( Post - Pre ) * a + Pre</translation>
    </message>
    <message>
        <source>Comp. with</source>
        <translation>比較対象</translation>
    </message>
    <message>
        <source>The edge shift is the one of best match with a comparison spectrum</source>
        <translation>比較スペクトルと最もよく一致するシフトを吸収端シフトとする</translation>
    </message>
    <message>
        <source>File</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>Compare with a spectrum file</source>
        <translation>スペクトルファイルと比較</translation>
    </message>
    <message>
        <source>Step at</source>
        <translation>ステップ位置</translation>
    </message>
    <message>
        <source>Compare with a step function</source>
        <translation>ステップ関数と比較</translation>
    </message>
    <message>
        <source>9000</source>
        <translation>9000</translation>
    </message>
    <message>
        <source>Position of the step, eV</source>
        <translation>ステップの位置 (eV)</translation>
    </message>
    <message>
        <source>SW</source>
        <translation>SW</translation>
    </message>
    <message>
        <source>300</source>
        <translation>300</translation>
    </message>
    <message>
        <source>Full width of the step function, eV</source>
        <translation>ステップ関数の全幅 (eV)</translation>
    </message>
    <message>
        <source>dE</source>
        <translation>dE</translation>
    </message>
    <message>
        <source>0.01</source>
        <translation>0.01</translation>
    </message>
    <message>
        <source>Spacing of the step function&apos;s points, eV</source>
        <translation>ステップ関数の点の間隔 (eV)</translation>
    </message>
    <message>
        <source>Seek Min. Params: Comp. Range</source>
        <translation>最小探索の条件: 比較範囲</translation>
    </message>
    <message>
        <source>20</source>
        <translation>20</translation>
    </message>
    <message>
        <source>Full width of the search, eV</source>
        <translation>探索の全幅 (eV)</translation>
    </message>
    <message>
        <source>Init. Step</source>
        <translation>初期ステップ</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>First search step, eV</source>
        <translation>最初の探索ステップ (eV)</translation>
    </message>
    <message>
        <source>Min. Step</source>
        <translation>最小ステップ</translation>
    </message>
    <message>
        <source>0.1</source>
        <translation>0.1</translation>
    </message>
    <message>
        <source>The search ends below this step, eV</source>
        <translation>ステップがこれを下回ると探索終了 (eV)</translation>
    </message>
    <message>
        <source>Elements</source>
        <translation>元素</translation>
    </message>
    <message>
        <source>Target Element Names</source>
        <translation>対象元素名</translation>
    </message>
    <message>
        <source>Elements and edges, e.g. &quot;Fe, Cu-K, Pb-LIII&quot;</source>
        <translation>元素と吸収端 (例 &quot;Fe, Cu-K, Pb-LIII&quot;)</translation>
    </message>
    <message>
        <source>Sort by A. No.</source>
        <translation>原子番号順</translation>
    </message>
    <message>
        <source>Order the element panels by atomic number</source>
        <translation>元素パネルを原子番号順に並べる</translation>
    </message>
    <message>
        <source>Show Res. Elems A.</source>
        <translation>元素解析結果</translation>
    </message>
    <message>
        <source>Show a map of the element analysis</source>
        <translation>元素解析のマップを表示</translation>
    </message>
    <message>
        <source>dMut of The Elem.</source>
        <translation>元素の dMut</translation>
    </message>
    <message>
        <source>Edge jump</source>
        <translation>エッジジャンプ</translation>
    </message>
    <message>
        <source>N. dMut of The Elem.</source>
        <translation>元素の規格化 dMut</translation>
    </message>
    <message>
        <source>Edge jump relative to the target element</source>
        <translation>対象元素に対するエッジジャンプの比</translation>
    </message>
    <message>
        <source>Mut+</source>
        <translation>Mut+</translation>
    </message>
    <message>
        <source>Mean absorption above the edge</source>
        <translation>吸収端より上の平均吸光度</translation>
    </message>
    <message>
        <source>Mut-</source>
        <translation>Mut-</translation>
    </message>
    <message>
        <source>Mean absorption below the edge</source>
        <translation>吸収端より下の平均吸光度</translation>
    </message>
    <message>
        <source>Edge position relative to E0</source>
        <translation>E0 に対する吸収端位置</translation>
    </message>
    <message>
        <source>ROI</source>
        <translation>ROI</translation>
    </message>
    <message>
        <source>Mean absorption in the ROI</source>
        <translation>ROI 内の平均吸光度</translation>
    </message>
    <message>
        <source>N.ROI</source>
        <translation>N.ROI</translation>
    </message>
    <message>
        <source>ROI / dmut</source>
        <translation>ROI / dmut</translation>
    </message>
    <message>
        <source>Correlation</source>
        <translation>相関</translation>
    </message>
    <message>
        <source>Correlation of the ratios with the standard ratios</source>
        <translation>比と標準比の相関</translation>
    </message>
    <message>
        <source>Cor. Th</source>
        <translation>相関閾値</translation>
    </message>
    <message>
        <source>Correlation where it reaches the threshold, else 0</source>
        <translation>閾値以上なら相関値、それ以外は 0</translation>
    </message>
    <message>
        <source>Set STD</source>
        <translation>標準に設定</translation>
    </message>
    <message>
        <source>Take the ratios of the spectrum under the pointer as the standard ratios</source>
        <translation>ポインタ位置のスペクトルの比を標準比とする</translation>
    </message>
    <message>
        <source>ReCalc Cor.</source>
        <translation>相関再計算</translation>
    </message>
    <message>
        <source>Recalculate the correlation maps from the element maps</source>
        <translation>元素マップから相関マップを再計算</translation>
    </message>
    <message>
        <source>Cor. Th.</source>
        <translation>相関閾値</translation>
    </message>
    <message>
        <source>0.9</source>
        <translation>0.9</translation>
    </message>
    <message>
        <source>Correlation threshold</source>
        <translation>相関の閾値</translation>
    </message>
    <message>
        <source>1.0</source>
        <translation>1.0</translation>
    </message>
    <message>
        <source>Correlation of the spectrum under the pointer with the standard ratios</source>
        <translation>ポインタ位置のスペクトルと標準比の相関</translation>
    </message>
    <message>
        <source>Residual / F.V.</source>
        <translation>残留吸収 / 特徴値</translation>
    </message>
    <message>
        <source>Residual Absorption</source>
        <translation>残留吸収</translation>
    </message>
    <message>
        <source>Res = mut(</source>
        <translation>Res = mut(</translation>
    </message>
    <message>
        <source>8200</source>
        <translation>8200</translation>
    </message>
    <message>
        <source>Energy at which the lines are read, eV</source>
        <translation>線を読むエネルギー (eV)</translation>
    </message>
    <message>
        <source> [eV])- dmut x</source>
        <translation> [eV])- dmut ×</translation>
    </message>
    <message>
        <source>Factor on the jump</source>
        <translation>ジャンプに掛ける係数</translation>
    </message>
    <message>
        <source>Show dmut</source>
        <translation>dmut 表示</translation>
    </message>
    <message>
        <source>Show the jump map</source>
        <translation>ジャンプのマップを表示</translation>
    </message>
    <message>
        <source>Show the Rest</source>
        <translation>残りを表示</translation>
    </message>
    <message>
        <source>Show the map of the rest</source>
        <translation>残りのマップを表示</translation>
    </message>
    <message>
        <source>Show Ratio</source>
        <translation>比を表示</translation>
    </message>
    <message>
        <source>Show the ratio map</source>
        <translation>比のマップを表示</translation>
    </message>
    <message>
        <source>R.Hanlow.F.V</source>
        <translation>R.Hanlow.F.V</translation>
    </message>
    <message>
        <source>Step[eV]</source>
        <translation>ステップ[eV]</translation>
    </message>
    <message>
        <source>Energy step of the feature search, eV</source>
        <translation>特徴探索のエネルギーステップ (eV)</translation>
    </message>
    <message>
        <source>Elim Reg[eV].</source>
        <translation>除外幅[eV]</translation>
    </message>
    <message>
        <source>The rise is looked for this far above the feature, eV</source>
        <translation>特徴点からこの幅だけ上まで立ち上がりを探す (eV)</translation>
    </message>
    <message>
        <source>dM</source>
        <translation>dM</translation>
    </message>
    <message>
        <source>0.0</source>
        <translation>0.0</translation>
    </message>
    <message>
        <source>Height of the feature above the pre-edge line</source>
        <translation>プレエッジ線からの特徴の高さ</translation>
    </message>
    <message>
        <source>dE12</source>
        <translation>dE12</translation>
    </message>
    <message>
        <source>Distance from the feature to the following rise, eV</source>
        <translation>特徴点から次の立ち上がりまでの距離 (eV)</translation>
    </message>
    <message>
        <source>(E2-E1)</source>
        <translation>(E2-E1)</translation>
    </message>
    <message>
        <source>Map1 File</source>
        <translation>Map1 ファイル</translation>
    </message>
    <message>
        <source>Load an energy map file as Map1</source>
        <translation>エネルギーマップファイルを Map1 として読込</translation>
    </message>
    <message>
        <source>Name of Map1</source>
        <translation>Map1 の名前</translation>
    </message>
    <message>
        <source>Capture as Map1</source>
        <translation>Map1 に取込</translation>
    </message>
    <message>
        <source>Copy the map on display into Map1</source>
        <translation>表示中のマップを Map1 にコピー</translation>
    </message>
    <message>
        <source>Map2 File</source>
        <translation>Map2 ファイル</translation>
    </message>
    <message>
        <source>Load an energy map file as Map2</source>
        <translation>エネルギーマップファイルを Map2 として読込</translation>
    </message>
    <message>
        <source>Name of Map2</source>
        <translation>Map2 の名前</translation>
    </message>
    <message>
        <source>Capture as Map2</source>
        <translation>Map2 に取込</translation>
    </message>
    <message>
        <source>Copy the map on display into Map2</source>
        <translation>表示中のマップを Map2 にコピー</translation>
    </message>
    <message>
        <source>Sub.</source>
        <translation>減算</translation>
    </message>
    <message>
        <source>Map1 - Map2</source>
        <translation>Map1 - Map2</translation>
    </message>
    <message>
        <source>Div.</source>
        <translation>除算</translation>
    </message>
    <message>
        <source>Map1 / Map2 (1 where Map2 is 0)</source>
        <translation>Map1 / Map2 (Map2 が 0 なら 1)</translation>
    </message>
    <message>
        <source>Mask</source>
        <translation>マスク</translation>
    </message>
    <message>
        <source>Map1 where Map2 is positive, else 0</source>
        <translation>Map2 が正なら Map1、それ以外は 0</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>処理</translation>
    </message>
    <message>
        <source>Make the processed map over the selected area</source>
        <translation>選択領域の処理済みマップを作成</translation>
    </message>
    <message>
        <source>Map1</source>
        <translation>Map1</translation>
    </message>
    <message>
        <source>Show Map1</source>
        <translation>Map1 表示</translation>
    </message>
    <message>
        <source>Map2</source>
        <translation>Map2</translation>
    </message>
    <message>
        <source>Show Map2</source>
        <translation>Map2 表示</translation>
    </message>
    <message>
        <source>Processed</source>
        <translation>処理済み</translation>
    </message>
    <message>
        <source>Show the processed map</source>
        <translation>処理済みマップを表示</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>スケール</translation>
    </message>
    <message>
        <source>Fixed Scale</source>
        <translation>固定スケール</translation>
    </message>
    <message>
        <source>Colour the maps between fixed values instead of their own range</source>
        <translation>マップ自身の範囲でなく固定値の間で色付け</translation>
    </message>
    <message>
        <source>DMut</source>
        <translation>DMut</translation>
    </message>
    <message>
        <source>Lower end of the fixed scale of amplitude maps</source>
        <translation>振幅マップの固定スケールの下限</translation>
    </message>
    <message>
        <source>Upper end of the fixed scale of amplitude maps</source>
        <translation>振幅マップの固定スケールの上限</translation>
    </message>
    <message>
        <source>Ratio</source>
        <translation>比</translation>
    </message>
    <message>
        <source>Lower end of the fixed scale of ratio maps</source>
        <translation>比マップの固定スケールの下限</translation>
    </message>
    <message>
        <source>Upper end of the fixed scale of ratio maps</source>
        <translation>比マップの固定スケールの上限</translation>
    </message>
    <message>
        <source>Upper Limit V.</source>
        <translation>上限値</translation>
    </message>
    <message>
        <source>Kept with the maps</source>
        <translation>マップと共に保存</translation>
    </message>
    <message>
        <source>10</source>
        <translation>10</translation>
    </message>
    <message>
        <source>Upper limit value</source>
        <translation>上限値</translation>
    </message>
    <message>
        <source>Image Type:</source>
        <translation>画像の種類:</translation>
    </message>
    <message>
        <source>Reference maps show amplitudes</source>
        <translation>参照マップに振幅を表示</translation>
    </message>
    <message>
        <source>Reference maps show ratios</source>
        <translation>参照マップに割合を表示</translation>
    </message>
    <message>
        <source>Analyzing Spectrum</source>
        <translation>解析中のスペクトル</translation>
    </message>
    <message>
        <source>Select Ref%1</source>
        <translation>参照%1 選択</translation>
    </message>
    <message>
        <source>Energy Shift Map File (*.emp)</source>
        <translation>エネルギーシフトマップファイル (*.emp)</translation>
    </message>
    <message>
        <source>Any Files (* *.*)</source>
        <translation>すべてのファイル (* *.*)</translation>
    </message>
    <message>
        <source>Show FV</source>
        <translation>特徴値表示</translation>
    </message>
    <message>
        <source>Open the scatter and density maps of the feature values of the last run</source>
        <translation>直前の実行で得た特徴値の散布図と密度図を開く</translation>
    </message>
</context>
<context>
    <name>Analyzer2</name>
    <message>
        <source>Quality Information</source>
        <translation>品質情報</translation>
    </message>
    <message>
        <source>Collect Q Info</source>
        <translation>品質情報収集</translation>
    </message>
    <message>
        <source>Collect quality information over the analysis area</source>
        <translation>解析領域で品質情報を集める</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>ダーク</translation>
    </message>
    <message>
        <source>Th</source>
        <translation>閾値</translation>
    </message>
    <message>
        <source>20000</source>
        <translation>20000</translation>
    </message>
    <message>
        <source>A pixel above this value in every frame is hot</source>
        <translation>全フレームでこの値を超える画素をホットピクセルとする</translation>
    </message>
    <message>
        <source>Dark Check</source>
        <translation>ダークチェック</translation>
    </message>
    <message>
        <source>Read the I1 stack as dark frames: write the histogram of all pixels and the hot pixels (dark-*.dat in the working folder)</source>
        <translation>I1 スタックをダーク画像として読み、全画素のヒストグラムとホットピクセルを書き出す (作業フォルダの dark-*.dat)</translation>
    </message>
    <message>
        <source>Histg. Max.</source>
        <translation>ヒストグラム上限</translation>
    </message>
    <message>
        <source>60000</source>
        <translation>60000</translation>
    </message>
    <message>
        <source>Top of the histogram; larger values count in the last bin</source>
        <translation>ヒストグラムの上限; これより大きい値は最後のビンに数える</translation>
    </message>
    <message>
        <source>Bins</source>
        <translation>ビン数</translation>
    </message>
    <message>
        <source>100</source>
        <translation>100</translation>
    </message>
    <message>
        <source>Number of bins between 0 and the top</source>
        <translation>0 から上限までのビンの数</translation>
    </message>
    <message>
        <source>Err Points</source>
        <translation>欠陥画素</translation>
    </message>
    <message>
        <source>Use Err Points Mask</source>
        <translation>欠陥画素マスク使用</translation>
    </message>
    <message>
        <source>Mend the pixels of the bad-pixel mask in frames read from now on</source>
        <translation>これから読み込むフレームで欠陥画素マスクの画素を補正</translation>
    </message>
    <message>
        <source>The bad-pixel mask file</source>
        <translation>欠陥画素マスクファイル</translation>
    </message>
    <message>
        <source>Fourier A.</source>
        <translation>フーリエ解析</translation>
    </message>
    <message>
        <source>Compare the first frame with each Fourier component of the spectra over the analysis area (result in the log)</source>
        <translation>解析領域のスペクトルの各フーリエ成分を最初のフレームと比較 (結果はログに出力)</translation>
    </message>
</context>
<context>
    <name>BatchCtrl</name>
    <message>
        <source>Batch Ctrl.</source>
        <translation>バッチ</translation>
    </message>
    <message>
        <source>Batch Cmds</source>
        <translation>バッチ</translation>
    </message>
    <message>
        <source>Progress Log</source>
        <translation>進捗ログ</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>読込</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>クリア</translation>
    </message>
    <message>
        <source>Clear Log</source>
        <translation>ログ消去</translation>
    </message>
    <message>
        <source>Exec.</source>
        <translation>実行</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Batch File (*.bat)</source>
        <translation>バッチファイル (*.bat)</translation>
    </message>
    <message>
        <source>Any Files (* *.*)</source>
        <translation>すべてのファイル (* *.*)</translation>
    </message>
</context>
<context>
    <name>Body</name>
    <message>
        <source>Tessarelle</source>
        <translation>Tessarelle</translation>
    </message>
    <message>
        <source>Image area: the pointer selects the spectrum shown in the plot</source>
        <translation>画像領域: ポインタの位置のスペクトルをプロットに表示</translation>
    </message>
    <message>
        <source>Vertical cross section through the current position</source>
        <translation>現在位置を通る垂直断面</translation>
    </message>
    <message>
        <source>Horizontal cross section through the current position</source>
        <translation>現在位置を通る水平断面</translation>
    </message>
    <message>
        <source>&lt;</source>
        <translation>&lt;</translation>
    </message>
    <message>
        <source>Previous image</source>
        <translation>前の画像</translation>
    </message>
    <message>
        <source>Image in the stack</source>
        <translation>スタック内の画像</translation>
    </message>
    <message>
        <source>&gt;</source>
        <translation>&gt;</translation>
    </message>
    <message>
        <source>Next image</source>
        <translation>次の画像</translation>
    </message>
    <message>
        <source>Number of the image shown</source>
        <translation>表示中の画像の番号</translation>
    </message>
    <message>
        <source>Colour bar: drag to change the colour scale of the image shown</source>
        <translation>カラーバー: ドラッグで表示画像のカラースケールを変更</translation>
    </message>
    <message>
        <source>Set All</source>
        <translation>全適用</translation>
    </message>
    <message>
        <source>Apply the colour scale to every image of the stack</source>
        <translation>カラースケールをスタックの全画像に適用</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>最大</translation>
    </message>
    <message>
        <source>Reset Scale fills the image area (the image may be cut) instead of showing the whole image</source>
        <translation>全体表示で画像全体でなく画像領域いっぱいに表示 (画像が切れることあり)</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>拡大</translation>
    </message>
    <message>
        <source>Zoom the image area to the selected area</source>
        <translation>画像領域を選択領域に拡大</translation>
    </message>
    <message>
        <source>Reset Scale</source>
        <translation>全体表示</translation>
    </message>
    <message>
        <source>Show the whole image</source>
        <translation>画像全体を表示</translation>
    </message>
    <message>
        <source>I1 data files</source>
        <translation>I1 データファイル</translation>
    </message>
    <message>
        <source>I0 data files</source>
        <translation>I0 データファイル</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>表示</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>データ</translation>
    </message>
    <message>
        <source>Show the I1 images</source>
        <translation>I1 画像を表示</translation>
    </message>
    <message>
        <source>I0</source>
        <translation>I0</translation>
    </message>
    <message>
        <source>Show the I0 images</source>
        <translation>I0 画像を表示</translation>
    </message>
    <message>
        <source>Eng. Shift</source>
        <translation>E シフト</translation>
    </message>
    <message>
        <source>Show the energy-shift map over the image</source>
        <translation>画像にエネルギーシフトマップを表示</translation>
    </message>
    <message>
        <source>Res. Analysis</source>
        <translation>解析結果</translation>
    </message>
    <message>
        <source>Show the selected analysis map over the image</source>
        <translation>選んだ解析マップを画像に表示</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>使用</translation>
    </message>
    <message>
        <source>Use I0 images: divide by the I0 stack</source>
        <translation>I0 画像を使う: I0 スタックで割る</translation>
    </message>
    <message>
        <source>Fluo. Type</source>
        <translation>蛍光法</translation>
    </message>
    <message>
        <source>Fluorescence mode: absorption is I1 / I0</source>
        <translation>蛍光法: 吸光度は I1 / I0</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>ダーク</translation>
    </message>
    <message>
        <source>Select the dark image</source>
        <translation>ダーク画像を選択</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>クリア</translation>
    </message>
    <message>
        <source>Stop using the dark image</source>
        <translation>ダーク画像の使用をやめる</translation>
    </message>
    <message>
        <source>Exp. Time [ms]</source>
        <translation>露光時間 [ms]</translation>
    </message>
    <message>
        <source>Exposure time of the dark image in ms</source>
        <translation>ダーク画像の露光時間 (ms)</translation>
    </message>
    <message>
        <source>File name of the dark image</source>
        <translation>ダーク画像のファイル名</translation>
    </message>
    <message>
        <source>Box</source>
        <translation>ボックス</translation>
    </message>
    <message>
        <source>View H/V half width</source>
        <translation>表示 H/V 半幅</translation>
    </message>
    <message>
        <source>10</source>
        <translation>10</translation>
    </message>
    <message>
        <source>Half width of the viewing box in pixels</source>
        <translation>表示ボックスの横半幅 (画素)</translation>
    </message>
    <message>
        <source>Half height of the viewing box in pixels</source>
        <translation>表示ボックスの縦半幅 (画素)</translation>
    </message>
    <message>
        <source>Analysis H/V half width</source>
        <translation>解析 H/V 半幅</translation>
    </message>
    <message>
        <source>Half width of the analysis box in pixels</source>
        <translation>解析ボックスの横半幅 (画素)</translation>
    </message>
    <message>
        <source>Half height of the analysis box in pixels</source>
        <translation>解析ボックスの縦半幅 (画素)</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>領域</translation>
    </message>
    <message>
        <source>The selected area</source>
        <translation>選択領域</translation>
    </message>
    <message>
        <source>Full</source>
        <translation>全体</translation>
    </message>
    <message>
        <source>Select the whole image</source>
        <translation>画像全体を選択</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Current pixel, x</source>
        <translation>現在の画素 x</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>Current pixel, y</source>
        <translation>現在の画素 y</translation>
    </message>
    <message>
        <source>A00</source>
        <translation>A00</translation>
    </message>
    <message>
        <source>Label of the next stored position</source>
        <translation>次に記憶する位置のラベル</translation>
    </message>
    <message>
        <source>Stored positions</source>
        <translation>記憶した位置</translation>
    </message>
    <message>
        <source>Mem.</source>
        <translation>記憶</translation>
    </message>
    <message>
        <source>Store the current position</source>
        <translation>現在の位置を記憶</translation>
    </message>
    <message>
        <source>Go</source>
        <translation>移動</translation>
    </message>
    <message>
        <source>Go to the selected stored position</source>
        <translation>選んだ記憶位置へ移動</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Delete the selected stored position</source>
        <translation>選んだ記憶位置を削除</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>値</translation>
    </message>
    <message>
        <source>Value under the pointer</source>
        <translation>ポインタ位置の値</translation>
    </message>
    <message>
        <source>Second value under the pointer</source>
        <translation>ポインタ位置の第二の値</translation>
    </message>
    <message>
        <source>Dark value under the pointer</source>
        <translation>ポインタ位置のダーク値</translation>
    </message>
    <message>
        <source>dE from Std.:</source>
        <translation>標準との dE:</translation>
    </message>
    <message>
        <source>0.0</source>
        <translation>0.0</translation>
    </message>
    <message>
        <source>Energy shift against the standard at the pointer</source>
        <translation>ポインタ位置の標準に対するエネルギーシフト</translation>
    </message>
    <message>
        <source>from Tbl.:</source>
        <translation>表から:</translation>
    </message>
    <message>
        <source>Energy shift against the table value</source>
        <translation>表の値に対するエネルギーシフト</translation>
    </message>
    <message>
        <source>Q.S. Fitted</source>
        <translation>二次曲面</translation>
    </message>
    <message>
        <source>Use the quadratic surface fitted to the shift map instead of the map</source>
        <translation>シフトマップの代わりにフィットした二次曲面を使う</translation>
    </message>
    <message>
        <source>Chk Vals</source>
        <translation>値確認</translation>
    </message>
    <message>
        <source>Write the values of the current analysis map to the log</source>
        <translation>現在の解析マップの値をログに書く</translation>
    </message>
    <message>
        <source>DeGlitch</source>
        <translation>グリッチ除去</translation>
    </message>
    <message>
        <source>Show and save the analysis map with its outliers replaced by the mean of their neighbours</source>
        <translation>外れ値を近傍平均で置き換えた解析マップを表示して保存</translation>
    </message>
    <message>
        <source>Element</source>
        <translation>元素</translation>
    </message>
    <message>
        <source>Suggest Elm.</source>
        <translation>元素推定</translation>
    </message>
    <message>
        <source>Analyse spectra around the edge of the element named here</source>
        <translation>ここで指定した元素の吸収端付近でスペクトルを解析</translation>
    </message>
    <message>
        <source>Cu</source>
        <translation>Cu</translation>
    </message>
    <message>
        <source>Element symbol, e.g. Cu (case matters)</source>
        <translation>元素記号 (例 Cu、大文字小文字を区別)</translation>
    </message>
    <message>
        <source>Absorption edge</source>
        <translation>吸収端</translation>
    </message>
    <message>
        <source>K</source>
        <translation>K</translation>
    </message>
    <message>
        <source>L1</source>
        <translation>L1</translation>
    </message>
    <message>
        <source>L2</source>
        <translation>L2</translation>
    </message>
    <message>
        <source>L3</source>
        <translation>L3</translation>
    </message>
    <message>
        <source>Edge energy in eV: filled from the edge table, may be overwritten by hand</source>
        <translation>吸収端エネルギー (eV): 吸収端表から入り、手で書き換え可</translation>
    </message>
    <message>
        <source>[eV]</source>
        <translation>[eV]</translation>
    </message>
    <message>
        <source>dPreE</source>
        <translation>dPreE</translation>
    </message>
    <message>
        <source>-20</source>
        <translation>-20</translation>
    </message>
    <message>
        <source>End of the pre-edge fit range, eV relative to the edge</source>
        <translation>プレエッジのフィット範囲の終点 (吸収端からの eV)</translation>
    </message>
    <message>
        <source>dPostS</source>
        <translation>dPostS</translation>
    </message>
    <message>
        <source>20</source>
        <translation>20</translation>
    </message>
    <message>
        <source>Start of the post-edge fit range, eV relative to the edge</source>
        <translation>ポストエッジのフィット範囲の始点 (吸収端からの eV)</translation>
    </message>
    <message>
        <source>Th. Jmp.</source>
        <translation>ジャンプ閾値</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>Smallest edge jump, in units of the noise of the background lines</source>
        <translation>最小のエッジジャンプ (バックグラウンド線のノイズ単位)</translation>
    </message>
    <message>
        <source>sgm.</source>
        <translation>σ</translation>
    </message>
    <message>
        <source>Connection to the STARS message server</source>
        <translation>STARS メッセージサーバーへの接続</translation>
    </message>
    <message>
        <source>Batch Ctrl.</source>
        <translation>バッチ</translation>
    </message>
    <message>
        <source>Open the batch window</source>
        <translation>バッチウィンドウを開く</translation>
    </message>
    <message>
        <source>Analyzer</source>
        <translation>解析</translation>
    </message>
    <message>
        <source>Open the analysis window: maps of the edge position, fits, elements</source>
        <translation>解析ウィンドウを開く: 吸収端位置、フィット、元素のマップ</translation>
    </message>
    <message>
        <source>Analyzer 2</source>
        <translation>解析 2</translation>
    </message>
    <message>
        <source>Open the quality window</source>
        <translation>品質ウィンドウを開く</translation>
    </message>
    <message>
        <source>Save Data</source>
        <translation>データ保存</translation>
    </message>
    <message>
        <source>Save the map on display, as TIFF or text as set in the save configuration</source>
        <translation>表示中のマップを保存設定に従い TIFF またはテキストで保存</translation>
    </message>
    <message>
        <source>Save Cfg.</source>
        <translation>保存設定</translation>
    </message>
    <message>
        <source>Open the save configuration: TIFF scale and size, text layout</source>
        <translation>保存設定を開く: TIFF のスケールとサイズ、テキストの形式</translation>
    </message>
    <message>
        <source>Save Image</source>
        <translation>画像保存</translation>
    </message>
    <message>
        <source>Save the shown part of the image as a picture, with the colour bar and the view in an .info file</source>
        <translation>表示中の画像部分を画像として保存 (カラーバーと表示範囲は .info ファイルへ)</translation>
    </message>
    <message>
        <source>Flat/Dark</source>
        <translation>フラット/ダーク</translation>
    </message>
    <message>
        <source>Write a neutral flat (flat.dat, all 1) and dark (dark.dat, all 0) of the image size to the working folder</source>
        <translation>画像の大きさの中立なフラット (flat.dat, 全て 1) とダーク (dark.dat, 全て 0) を作業フォルダに書く</translation>
    </message>
    <message>
        <source>Norm.</source>
        <translation>規格化</translation>
    </message>
    <message>
        <source>Save Spectra writes the normalised spectrum of every point</source>
        <translation>スペクトル保存で各点の規格化スペクトルを書く</translation>
    </message>
    <message>
        <source>XAFS</source>
        <translation>XAFS</translation>
    </message>
    <message>
        <source>Save Spectra writes the absorption (not normalised) of every point</source>
        <translation>スペクトル保存で各点の吸光度 (規格化なし) を書く</translation>
    </message>
    <message>
        <source>Raw</source>
        <translation>生データ</translation>
    </message>
    <message>
        <source>Save Spectra writes the I1 box sums of every point</source>
        <translation>スペクトル保存で各点の I1 ボックス和を書く</translation>
    </message>
    <message>
        <source>Save Spectra</source>
        <translation>スペクトル保存</translation>
    </message>
    <message>
        <source>Save the spectrum of every point of the analysis area into one table</source>
        <translation>解析領域の全点のスペクトルを一つの表に保存</translation>
    </message>
    <message>
        <source>Calib.</source>
        <translation>校正</translation>
    </message>
    <message>
        <source>Open the energy calibration: make, save and load the energy-shift map</source>
        <translation>エネルギー校正を開く: エネルギーシフトマップの作成・保存・読込</translation>
    </message>
    <message>
        <source>NES</source>
        <translation>NES</translation>
    </message>
    <message>
        <source>Deglitch E-Shift Map</source>
        <translation>エネルギーシフトマップのグリッチ除去</translation>
    </message>
    <message>
        <source>Total I0</source>
        <translation>全 I0</translation>
    </message>
    <message>
        <source>Total I0 of I1</source>
        <translation>I1 の全 I0</translation>
    </message>
    <message>
        <source>Total I0 of I0</source>
        <translation>I0 の全 I0</translation>
    </message>
    <message>
        <source>BG File</source>
        <translation>BG ファイル</translation>
    </message>
    <message>
        <source>Show BG</source>
        <translation>BG 表示</translation>
    </message>
    <message>
        <source>Show the background spectrum</source>
        <translation>バックグラウンドスペクトルを表示</translation>
    </message>
    <message>
        <source>I1 Data</source>
        <translation>I1 データ</translation>
    </message>
    <message>
        <source>I0 Data</source>
        <translation>I0 データ</translation>
    </message>
    <message>
        <source>Picture (*.png *.jpg *.tif)</source>
        <translation>画像 (*.png *.jpg *.tif)</translation>
    </message>
    <message>
        <source>Any Files (* *.*)</source>
        <translation>すべてのファイル (* *.*)</translation>
    </message>
    <message>
        <source>Data File (*.dat)</source>
        <translation>データファイル (*.dat)</translation>
    </message>
    <message>
        <source>Tiff File (*.tif)</source>
        <translation>TIFF ファイル (*.tif)</translation>
    </message>
    <message>
        <source>Spectrum at the position</source>
        <translation>ポインタ位置のスペクトル</translation>
    </message>
    <message>
        <source>Spectrum</source>
        <translation>スペクトル</translation>
    </message>
    <message>
        <source>Show the spectrum at the position</source>
        <translation>ポインタ位置のスペクトルを表示</translation>
    </message>
    <message>
        <source>BG Specturm</source>
        <translation>BG スペクトル</translation>
    </message>
    <message>
        <source>Image Proc.</source>
        <translation>画像処理</translation>
    </message>
    <message>
        <source>Open the image processor: align frames by their edges</source>
        <translation>画像処理ウィンドウを開く: エッジでフレームを位置合わせ</translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>統計</translation>
    </message>
    <message>
        <source>Histogram and statistics of the map shown in the analysis window</source>
        <translation>解析ウィンドウに表示中のマップのヒストグラムと統計</translation>
    </message>
</context>
<context>
    <name>CalibCtrl</name>
    <message>
        <source>Energy Calibration</source>
        <translation>エネルギー校正</translation>
    </message>
    <message>
        <source>Calib. Type :</source>
        <translation>校正方法 :</translation>
    </message>
    <message>
        <source>dMidx</source>
        <translation>dMidx</translation>
    </message>
    <message>
        <source>Calibrate by the difference of dMidx: the point where the spectrum crosses the mean of its pre- and post-edge lines, against that of the standard</source>
        <translation>dMidx の差による校正: スペクトルがプレエッジ線とポストエッジ線の平均を横切る点を標準と比較</translation>
    </message>
    <message>
        <source>inner P.</source>
        <translation>内積</translation>
    </message>
    <message>
        <source>Calibrate by normalised inner products: the spectrum is moved in energy until its normalised curve matches that of the standard best</source>
        <translation>規格化内積による校正: 規格化スペクトルが標準と最もよく一致するまでエネルギー方向に移動</translation>
    </message>
    <message>
        <source>Search of the inner-product method: passes over the range, each with a step ten times finer than the last</source>
        <translation>内積法の探索: 範囲を繰り返し走査し、毎回ステップを前回の10分の1にする</translation>
    </message>
    <message>
        <source>Initial E-range</source>
        <translation>初期 E 範囲</translation>
    </message>
    <message>
        <source>20</source>
        <translation>20</translation>
    </message>
    <message>
        <source>Half width of the search around the difference of the edges</source>
        <translation>吸収端の差の周りの探索半幅</translation>
    </message>
    <message>
        <source>[eV]</source>
        <translation>[eV]</translation>
    </message>
    <message>
        <source>E-step</source>
        <translation>Eステップ</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>Step of the first pass</source>
        <translation>最初の走査のステップ</translation>
    </message>
    <message>
        <source>Min. E-step</source>
        <translation>最小 Eステップ</translation>
    </message>
    <message>
        <source>0.1</source>
        <translation>0.1</translation>
    </message>
    <message>
        <source>The passes end when the step falls below this</source>
        <translation>ステップがこれより小さくなると走査を終える</translation>
    </message>
    <message>
        <source>Crystal</source>
        <translation>分光結晶</translation>
    </message>
    <message>
        <source>Monochromator crystal: its lattice spacing converts energy shifts into the angles stored in a map file</source>
        <translation>分光結晶: 格子面間隔でエネルギーシフトをマップファイルに保存する角度に換算</translation>
    </message>
    <message>
        <source>Edge</source>
        <translation>吸収端</translation>
    </message>
    <message>
        <source>Edge energy of the standard [eV]; a map file is read against it when it is above 0</source>
        <translation>標準の吸収端エネルギー [eV]; 0 より大きいときマップファイルはこれに対して読まれる</translation>
    </message>
    <message>
        <source>The standard spectrum that every point is compared with</source>
        <translation>各点と比較する標準スペクトル</translation>
    </message>
    <message>
        <source>Target :</source>
        <translation>対象 :</translation>
    </message>
    <message>
        <source>Simple</source>
        <translation>単純</translation>
    </message>
    <message>
        <source>Straight pre- and post-edge lines for the spectrum at each point</source>
        <translation>各点のスペクトルのプレエッジ線とポストエッジ線を直線に</translation>
    </message>
    <message>
        <source>Victreen</source>
        <translation>Victoreen</translation>
    </message>
    <message>
        <source>Victoreen pre- and post-edge lines for the spectrum at each point</source>
        <translation>各点のスペクトルのプレエッジ線とポストエッジ線を Victoreen 曲線に</translation>
    </message>
    <message>
        <source>  Std. :</source>
        <translation>  標準 :</translation>
    </message>
    <message>
        <source>Straight pre- and post-edge lines for the standard</source>
        <translation>標準のプレエッジ線とポストエッジ線を直線に</translation>
    </message>
    <message>
        <source>Victoreen pre- and post-edge lines for the standard</source>
        <translation>標準のプレエッジ線とポストエッジ線を Victoreen 曲線に</translation>
    </message>
    <message>
        <source>Exec Calib.</source>
        <translation>校正実行</translation>
    </message>
    <message>
        <source>Start the calibration over the selected area (the view without a selection); press again to stop it</source>
        <translation>選択領域 (選択がなければ表示範囲) の校正を開始; もう一度押すと停止</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Progress of the calibration</source>
        <translation>校正の進捗</translation>
    </message>
    <message>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <source>Clear Map</source>
        <translation>マップ消去</translation>
    </message>
    <message>
        <source>Forget the energy-shift map</source>
        <translation>エネルギーシフトマップを破棄</translation>
    </message>
    <message>
        <source>Statistic &amp;&amp; Properties</source>
        <translation>統計と特性</translation>
    </message>
    <message>
        <source>X Offset</source>
        <translation>X オフセット</translation>
    </message>
    <message>
        <source>Detector x offset of the frames the map belongs to</source>
        <translation>マップが属するフレームの検出器 x オフセット</translation>
    </message>
    <message>
        <source>Y Offset</source>
        <translation>Y オフセット</translation>
    </message>
    <message>
        <source>Detector y offset of the frames the map belongs to</source>
        <translation>マップが属するフレームの検出器 y オフセット</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>幅</translation>
    </message>
    <message>
        <source>Image width of the map</source>
        <translation>マップの画像の幅</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>高さ</translation>
    </message>
    <message>
        <source>Image height of the map</source>
        <translation>マップの画像の高さ</translation>
    </message>
    <message>
        <source>Max.</source>
        <translation>最大</translation>
    </message>
    <message>
        <source>Largest energy shift of the last calibration [eV]</source>
        <translation>直前の校正の最大エネルギーシフト [eV]</translation>
    </message>
    <message>
        <source>Avr.</source>
        <translation>平均</translation>
    </message>
    <message>
        <source>Mean energy shift of the last calibration [eV]</source>
        <translation>直前の校正の平均エネルギーシフト [eV]</translation>
    </message>
    <message>
        <source>Delta Energy DMin.</source>
        <translation>エネルギー差 最小</translation>
    </message>
    <message>
        <source>Smallest energy shift of the last calibration [eV]</source>
        <translation>直前の校正の最小エネルギーシフト [eV]</translation>
    </message>
    <message>
        <source>sigma</source>
        <translation>sigma</translation>
    </message>
    <message>
        <source>Spread of the map (or of its fitted surface) about the mean [eV]</source>
        <translation>マップ (またはフィット曲面) の平均のまわりの広がり [eV]</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Save the energy-shift map as an .emp file</source>
        <translation>エネルギーシフトマップを .emp ファイルに保存</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>読込</translation>
    </message>
    <message>
        <source>Load an energy-shift map from an .emp file</source>
        <translation>.emp ファイルからエネルギーシフトマップを読込</translation>
    </message>
    <message>
        <source>Chk. Size</source>
        <translation>サイズ確認</translation>
    </message>
    <message>
        <source>Refuse a map file whose size differs from the images loaded</source>
        <translation>読み込んだ画像と大きさの違うマップファイルを拒否</translation>
    </message>
    <message>
        <source>The map file last loaded</source>
        <translation>最後に読み込んだマップファイル</translation>
    </message>
    <message>
        <source>Select Std.</source>
        <translation>標準選択</translation>
    </message>
    <message>
        <source>Energy Shift Map File (*.emp)</source>
        <translation>エネルギーシフトマップファイル (*.emp)</translation>
    </message>
    <message>
        <source>Any Files (* *.*)</source>
        <translation>すべてのファイル (* *.*)</translation>
    </message>
</context>
<context>
    <name>ConnectStat</name>
    <message>
        <source>Disconnected</source>
        <translation>未接続</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>接続</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>接続処理中</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>接続中</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>切断</translation>
    </message>
</context>
<context>
    <name>EOFSetup</name>
    <message>
        <source>Energy of Files Setup</source>
        <translation>ファイルのエネルギー設定</translation>
    </message>
    <message>
        <source>Energy Cal. from File Name</source>
        <translation>ファイル名からエネルギー</translation>
    </message>
    <message>
        <source>Read each frame&apos;s energy from its file name with the regular expression below</source>
        <translation>各フレームのエネルギーを下の正規表現でファイル名から読む</translation>
    </message>
    <message>
        <source>Pattern</source>
        <translation>パターン</translation>
    </message>
    <message>
        <source>Regular expression that finds the energy in the file name (path included); &quot;_&quot; stands for the decimal point</source>
        <translation>ファイル名 (パスを含む) からエネルギーを探す正規表現; &quot;_&quot; は小数点を表す</translation>
    </message>
    <message>
        <source>Known</source>
        <translation>既知</translation>
    </message>
    <message>
        <source>Known patterns: choosing one writes it to the pattern field</source>
        <translation>既知のパターン: 選ぶとパターン欄に書き込む</translation>
    </message>
    <message>
        <source>Factor</source>
        <translation>係数</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>Multiplier from the number in the name to eV (1000 for keV); not applied unless positive</source>
        <translation>名前の数値を eV にする係数 (keV なら 1000); 正のときのみ適用</translation>
    </message>
    <message>
        <source>Energy Cal. from Ref. File</source>
        <translation>参照ファイルからエネルギー</translation>
    </message>
    <message>
        <source>Take the energies from a reference file written by the acquisition program</source>
        <translation>測定プログラムが書いた参照ファイルからエネルギーを取る</translation>
    </message>
    <message>
        <source>The reference file</source>
        <translation>参照ファイル</translation>
    </message>
    <message>
        <source>Sel.</source>
        <translation>選択</translation>
    </message>
    <message>
        <source>Choose the reference file</source>
        <translation>参照ファイルを選択</translation>
    </message>
    <message>
        <source>Correspond from End</source>
        <translation>末尾から対応</translation>
    </message>
    <message>
        <source>Match the last frame to the last row of the reference file</source>
        <translation>最後のフレームを参照ファイルの最終行に対応させる</translation>
    </message>
    <message>
        <source>Energy Cal. from File No.</source>
        <translation>ファイル番号からエネルギー</translation>
    </message>
    <message>
        <source>Calculate each frame&apos;s energy from its number with the recipe below</source>
        <translation>各フレームのエネルギーを番号から下の設定で計算</translation>
    </message>
    <message>
        <source>Sel. Unit</source>
        <translation>単位</translation>
    </message>
    <message>
        <source>Unit of Start, End and Delta</source>
        <translation>開始、終了、刻みの単位</translation>
    </message>
    <message>
        <source>eV</source>
        <translation>eV</translation>
    </message>
    <message>
        <source>keV</source>
        <translation>keV</translation>
    </message>
    <message>
        <source>deg</source>
        <translation>度</translation>
    </message>
    <message>
        <source>Even in</source>
        <translation>等間隔</translation>
    </message>
    <message>
        <source>Energy</source>
        <translation>エネルギー</translation>
    </message>
    <message>
        <source>Frames are evenly spaced in energy</source>
        <translation>フレームはエネルギーで等間隔</translation>
    </message>
    <message>
        <source>Angle</source>
        <translation>角度</translation>
    </message>
    <message>
        <source>Frames are evenly spaced in monochromator angle between Start and End</source>
        <translation>フレームは開始から終了まで分光器角度で等間隔</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>開始</translation>
    </message>
    <message>
        <source>8000</source>
        <translation>8000</translation>
    </message>
    <message>
        <source>Energy or angle of the first frame; changes End</source>
        <translation>最初のフレームのエネルギーまたは角度; 終了を変更</translation>
    </message>
    <message>
        <source>End</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>9000</source>
        <translation>9000</translation>
    </message>
    <message>
        <source>Energy or angle of the last point; changes Delta</source>
        <translation>最後の点のエネルギーまたは角度; 刻みを変更</translation>
    </message>
    <message>
        <source>Delta</source>
        <translation>刻み</translation>
    </message>
    <message>
        <source>Step from one frame to the next; changes End</source>
        <translation>フレーム間の刻み; 終了を変更</translation>
    </message>
    <message>
        <source>Num</source>
        <translation>点数</translation>
    </message>
    <message>
        <source>1000</source>
        <translation>1000</translation>
    </message>
    <message>
        <source>Number of steps from Start to End; changes Delta</source>
        <translation>開始から終了までのステップ数; 刻みを変更</translation>
    </message>
    <message>
        <source>XAFS Data File (*.dat)</source>
        <translation>XAFS データファイル (*.dat)</translation>
    </message>
    <message>
        <source>Any Files (* *.*)</source>
        <translation>すべてのファイル (* *.*)</translation>
    </message>
    <message>
        <source>Energy of Files Setup: %1</source>
        <translation>ファイルのエネルギー設定: %1</translation>
    </message>
</context>
<context>
    <name>ElemCtrl</name>
    <message>
        <source>H</source>
        <translation>H</translation>
    </message>
    <message>
        <source>Element and edge</source>
        <translation>元素と吸収端</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>Atomic number</source>
        <translation>原子番号</translation>
    </message>
    <message>
        <source>background-color: rgb(255, 255, 231);</source>
        <translation>background-color: rgb(255, 255, 231);</translation>
    </message>
    <message>
        <source>0.0</source>
        <translation>0.0</translation>
    </message>
    <message>
        <source>Expected Absorption Edge.</source>
        <translation>予想される吸収端</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>使用</translation>
    </message>
    <message>
        <source>Use: takes part in the correlation</source>
        <translation>使用: 相関に加える</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>対象</translation>
    </message>
    <message>
        <source>Target: this element&apos;s dmut is the unit</source>
        <translation>対象: この元素の dmut を単位とする</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>表示</translation>
    </message>
    <message>
        <source>Show: this element&apos;s maps are shown</source>
        <translation>表示: この元素のマップを表示</translation>
    </message>
    <message>
        <source>Pre/Post dE</source>
        <translation>Pre/Post dE</translation>
    </message>
    <message>
        <source>20</source>
        <translation>20</translation>
    </message>
    <message>
        <source>dmut is calculated as mu(E0+dE) - mu(E0-dE).</source>
        <translation>dmut は mu(E0+dE) - mu(E0-dE) で計算</translation>
    </message>
    <message>
        <source>[eV]</source>
        <translation>[eV]</translation>
    </message>
    <message>
        <source>dmut</source>
        <translation>dmut</translation>
    </message>
    <message>
        <source>Edge jump of the last single analysis</source>
        <translation>直前の単点解析のエッジジャンプ</translation>
    </message>
    <message>
        <source>Th dmut</source>
        <translation>dmut 閾値</translation>
    </message>
    <message>
        <source>0.1</source>
        <translation>0.1</translation>
    </message>
    <message>
        <source>Threshold value of the dmut. When the dmut is less than the Threshold, most of the values (ROI, dmut,...) is set at BG Val.</source>
        <translation>dmut の閾値。dmut が閾値より小さいとき、ほとんどの値 (ROI, dmut, ...) は BG 値になる</translation>
    </message>
    <message>
        <source>Std. Ratio</source>
        <translation>標準比</translation>
    </message>
    <message>
        <source>1.0</source>
        <translation>1.0</translation>
    </message>
    <message>
        <source>Ratio of this element in the standard, for the correlation</source>
        <translation>相関に用いる標準でのこの元素の比</translation>
    </message>
    <message>
        <source>Ratio</source>
        <translation>比</translation>
    </message>
    <message>
        <source>Relative strength of the dmut against the dmut of selecte element as Target.</source>
        <translation>対象に選んだ元素の dmut に対する dmut の相対強度</translation>
    </message>
    <message>
        <source>dE</source>
        <translation>dE</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Position of the absorption edge, where the mut is ( mu(E0+dE) + mu(E0-dE) ) / 2.</source>
        <translation>吸収端の位置: mut が ( mu(E0+dE) + mu(E0-dE) ) / 2 となる点</translation>
    </message>
    <message>
        <source>ROI</source>
        <translation>ROI</translation>
    </message>
    <message>
        <source>7000</source>
        <translation>7000</translation>
    </message>
    <message>
        <source>Start position of the ROI.</source>
        <translation>ROI の始点</translation>
    </message>
    <message>
        <source>7005</source>
        <translation>7005</translation>
    </message>
    <message>
        <source>End position of the ROI.</source>
        <translation>ROI の終点</translation>
    </message>
    <message>
        <source>[eV] Th</source>
        <translation>[eV] 閾値</translation>
    </message>
    <message>
        <source>0.5</source>
        <translation>0.5</translation>
    </message>
    <message>
        <source>Stored with the element; no analysis reads it</source>
        <translation>元素と共に記録; 解析には使わない</translation>
    </message>
    <message>
        <source>ROI Value</source>
        <translation>ROI 値</translation>
    </message>
    <message>
        <source>Normalized ROI value calculated as ROI / dmut.</source>
        <translation>ROI / dmut で計算した規格化 ROI 値</translation>
    </message>
    <message>
        <source>No Neg</source>
        <translation>負値なし</translation>
    </message>
    <message>
        <source>When the ROI is negative, the BG value is used instead of the calculated one.</source>
        <translation>ROI が負のとき、計算値の代わりに BG 値を使う</translation>
    </message>
</context>
<context>
    <name>FVView</name>
    <message>
        <source>Show FV</source>
        <translation>特徴値表示</translation>
    </message>
    <message>
        <source>Density (left) and scatter (right) of dM against E2 - E1</source>
        <translation>dM 対 E2 - E1 の密度図 (左) と散布図 (右)</translation>
    </message>
    <message>
        <source>ReDraw</source>
        <translation>再描画</translation>
    </message>
    <message>
        <source>Draw both maps again from the collected values</source>
        <translation>集めた値から両方の図を描き直す</translation>
    </message>
    <message>
        <source>Kernel:</source>
        <translation>カーネル:</translation>
    </message>
    <message>
        <source>HW</source>
        <translation>半幅</translation>
    </message>
    <message>
        <source>10</source>
        <translation>10</translation>
    </message>
    <message>
        <source>Half width of the smoothing kernel, pixels</source>
        <translation>平滑化カーネルの半幅 (画素)</translation>
    </message>
    <message>
        <source>Border Val.</source>
        <translation>端の値</translation>
    </message>
    <message>
        <source>0.01</source>
        <translation>0.01</translation>
    </message>
    <message>
        <source>Kernel value at the half width</source>
        <translation>半幅でのカーネルの値</translation>
    </message>
    <message>
        <source>Color Range</source>
        <translation>色範囲</translation>
    </message>
    <message>
        <source>0.002</source>
        <translation>0.002</translation>
    </message>
    <message>
        <source>Fraction of the peak at which the colour saturates</source>
        <translation>色が飽和する値 (ピークに対する割合)</translation>
    </message>
</context>
<context>
    <name>ImgProc</name>
    <message>
        <source>Image Processor</source>
        <translation>画像処理</translation>
    </message>
    <message>
        <source>Edge, binary or comparison picture; the wheel zooms</source>
        <translation>エッジ・二値・比較画像; ホイールで拡大縮小</translation>
    </message>
    <message>
        <source>Drag an end to change the colours</source>
        <translation>端をドラッグして色を変更</translation>
    </message>
    <message>
        <source>Edge Detect</source>
        <translation>エッジ検出</translation>
    </message>
    <message>
        <source>The tool works on the frame on display while this is checked</source>
        <translation>チェック中は表示中のフレームを処理する</translation>
    </message>
    <message>
        <source>Min</source>
        <translation>最小</translation>
    </message>
    <message>
        <source>Smallest edge value</source>
        <translation>エッジ値の最小</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>最大</translation>
    </message>
    <message>
        <source>Largest edge value</source>
        <translation>エッジ値の最大</translation>
    </message>
    <message>
        <source>Th.</source>
        <translation>閾値</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Edge values above this threshold become 1 in the binary image</source>
        <translation>この閾値を超えるエッジ値は二値画像で 1 になる</translation>
    </message>
    <message>
        <source>Threshold between Min (left) and Max (right)</source>
        <translation>最小 (左) と最大 (右) の間の閾値</translation>
    </message>
    <message>
        <source>Binary</source>
        <translation>二値化</translation>
    </message>
    <message>
        <source>Show and use the binary image</source>
        <translation>二値画像を表示して使う</translation>
    </message>
    <message>
        <source>Set Ref.</source>
        <translation>参照に設定</translation>
    </message>
    <message>
        <source>The binary image becomes the reference</source>
        <translation>二値画像を参照にする</translation>
    </message>
    <message>
        <source>Comp.</source>
        <translation>比較</translation>
    </message>
    <message>
        <source>Overlay the reference (red) and the shifted binary image (cyan)</source>
        <translation>参照 (赤) とずらした二値画像 (シアン) を重ねて表示</translation>
    </message>
    <message>
        <source>Shift X:</source>
        <translation>シフト X:</translation>
    </message>
    <message>
        <source>Shift of the binary image in x, pixels</source>
        <translation>二値画像の x 方向のシフト (画素)</translation>
    </message>
    <message>
        <source>Y:</source>
        <translation>Y:</translation>
    </message>
    <message>
        <source>Shift of the binary image in y, pixels</source>
        <translation>二値画像の y 方向のシフト (画素)</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Shift up (Y - 1)</source>
        <translation>上へずらす (Y - 1)</translation>
    </message>
    <message>
        <source>Shift left (X - 1)</source>
        <translation>左へずらす (X - 1)</translation>
    </message>
    <message>
        <source>Shift right (X + 1)</source>
        <translation>右へずらす (X + 1)</translation>
    </message>
    <message>
        <source>Shift down (Y + 1)</source>
        <translation>下へずらす (Y + 1)</translation>
    </message>
    <message>
        <source>S.P.</source>
        <translation>内積</translation>
    </message>
    <message>
        <source>Normalised scalar product of reference and shifted image</source>
        <translation>参照とずらした画像の規格化内積</translation>
    </message>
    <message>
        <source>Auto Shift</source>
        <translation>自動シフト</translation>
    </message>
    <message>
        <source>Climb to the shift with the largest scalar product</source>
        <translation>内積が最大になるシフトを山登りで探す</translation>
    </message>
    <message>
        <source>Set Shift</source>
        <translation>シフト設定</translation>
    </message>
    <message>
        <source>Record the shift in the I1 frame on display</source>
        <translation>表示中の I1 フレームにシフトを記録</translation>
    </message>
    <message>
        <source>A. Set Shift</source>
        <translation>自動シフト設定</translation>
    </message>
    <message>
        <source>Record the shift found by each climb at once</source>
        <translation>探索で見つけたシフトをその都度記録</translation>
    </message>
    <message>
        <source>A. A. Shift</source>
        <translation>毎回自動シフト</translation>
    </message>
    <message>
        <source>Climb at each comparison</source>
        <translation>比較のたびにシフトを山登りで探す</translation>
    </message>
    <message>
        <source>Clear All Shifts</source>
        <translation>全シフト消去</translation>
    </message>
    <message>
        <source>Set the shift of every I1 frame to 0</source>
        <translation>全 I1 フレームのシフトを 0 にする</translation>
    </message>
</context>
<context>
    <name>LCFReference</name>
    <message>
        <source>::indicator:unchecked { background-color: #ccddcc; border-radius: 5px; border: 2px solid #999999; }::indicator:checked   { background-color: #ffffaa; border-radius: 5px; border: 2px solid #ffaa00; }</source>
        <translation>::indicator:unchecked { background-color: #ccddcc; border-radius: 5px; border: 2px solid #999999; }::indicator:checked   { background-color: #ffffaa; border-radius: 5px; border: 2px solid #ffaa00; }</translation>
    </message>
    <message>
        <source>Show the maps of this reference in the image area</source>
        <translation>この参照のマップを画像領域に表示</translation>
    </message>
    <message>
        <source>Victreen</source>
        <translation>Victoreen</translation>
    </message>
    <message>
        <source>Fit the background lines of this reference as Victoreen curves</source>
        <translation>この参照のバックグラウンド線を Victoreen 曲線でフィット</translation>
    </message>
    <message>
        <source>  dE [eV]</source>
        <translation>  dE [eV]</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Energy shift of this reference: its energies are read as x - dE</source>
        <translation>この参照のエネルギーシフト: エネルギーは x - dE として読む</translation>
    </message>
    <message>
        <source>Fraction of this reference in the last fit</source>
        <translation>直前のフィットでのこの参照の割合</translation>
    </message>
    <message>
        <source>[%]  </source>
        <translation>[%]  </translation>
    </message>
    <message>
        <source>Amplitude of this reference in the last fit, in absorption units</source>
        <translation>直前のフィットでのこの参照の振幅 (吸光度単位)</translation>
    </message>
    <message>
        <source>mut</source>
        <translation>mut</translation>
    </message>
    <message>
        <source>dMut</source>
        <translation>dMut</translation>
    </message>
    <message>
        <source>Edge jump of the reference spectrum</source>
        <translation>参照スペクトルのエッジジャンプ</translation>
    </message>
    <message>
        <source>at</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Edge position of the reference spectrum</source>
        <translation>参照スペクトルの吸収端位置</translation>
    </message>
    <message>
        <source>[eV]  </source>
        <translation>[eV]  </translation>
    </message>
    <message>
        <source>Use</source>
        <translation>使用</translation>
    </message>
</context>
<context>
    <name>SaveDataCfg</name>
    <message>
        <source>Save Data Configuration</source>
        <translation>データ保存の設定</translation>
    </message>
    <message>
        <source>Save as Tiff</source>
        <translation>TIFF で保存</translation>
    </message>
    <message>
        <source>Save maps as 16-bit TIFF</source>
        <translation>マップを 16 ビット TIFF で保存</translation>
    </message>
    <message>
        <source>Tiff</source>
        <translation>Tiff</translation>
    </message>
    <message>
        <source>Fixed Scale</source>
        <translation>固定スケール</translation>
    </message>
    <message>
        <source>Scale the values between Min and Max instead of the map&apos;s own range</source>
        <translation>マップ自身の範囲でなく最小と最大の間で値をスケール</translation>
    </message>
    <message>
        <source>Min</source>
        <translation>最小</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Value written as 0</source>
        <translation>0 として書く値</translation>
    </message>
    <message>
        <source>  Max</source>
        <translation>  最大</translation>
    </message>
    <message>
        <source>10</source>
        <translation>10</translation>
    </message>
    <message>
        <source>Value written as 65535</source>
        <translation>65535 として書く値</translation>
    </message>
    <message>
        <source>Save as Analyzed Area Size and Resolution</source>
        <translation>解析領域の大きさと分解能で保存</translation>
    </message>
    <message>
        <source>One pixel per analysed point of the area instead of the whole image</source>
        <translation>画像全体でなく解析した点ごとに一画素</translation>
    </message>
    <message>
        <source>Save as Text data</source>
        <translation>テキストで保存</translation>
    </message>
    <message>
        <source>Save maps as a text table</source>
        <translation>マップをテキストの表で保存</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>テキスト</translation>
    </message>
    <message>
        <source>Comma Separated</source>
        <translation>カンマ区切り</translation>
    </message>
    <message>
        <source>Columns separated by a comma</source>
        <translation>列をカンマで区切る</translation>
    </message>
    <message>
        <source>Space Separated</source>
        <translation>空白区切り</translation>
    </message>
    <message>
        <source>Columns separated by a blank</source>
        <translation>列を空白で区切る</translation>
    </message>
    <message>
        <source>X Y Val : 1point/1line</source>
        <translation>X Y 値 : 一行に一点</translation>
    </message>
    <message>
        <source>One point per line: x, y and the value</source>
        <translation>一行に一点: x, y と値</translation>
    </message>
    <message>
        <source>Val1 Val2 Val3... : each Y line</source>
        <translation>Val1 Val2 Val3... : Y ごとに一行</translation>
    </message>
    <message>
        <source>One line of values per row of points</source>
        <translation>点の一行ごとに値を一行</translation>
    </message>
</context>
<context>
    <name>SelectDataFiles</name>
    <message>
        <source>The stack these files load into</source>
        <translation>これらのファイルを読み込むスタック</translation>
    </message>
    <message>
        <source>Files:</source>
        <translation>ファイル:</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Number of frames loaded</source>
        <translation>読み込んだフレーム数</translation>
    </message>
    <message>
        <source>Data Select</source>
        <translation>データ選択</translation>
    </message>
    <message>
        <source>Choose image files to load</source>
        <translation>読み込む画像ファイルを選択</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>追加</translation>
    </message>
    <message>
        <source>Add the chosen files to the stack</source>
        <translation>選んだファイルをスタックに追加</translation>
    </message>
    <message>
        <source>New</source>
        <translation>新規</translation>
    </message>
    <message>
        <source>Replace the stack with the chosen files</source>
        <translation>スタックを選んだファイルで置き換え</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>クリア</translation>
    </message>
    <message>
        <source>Remove all frames of this stack</source>
        <translation>このスタックの全フレームを削除</translation>
    </message>
    <message>
        <source>The loaded frames; choosing one shows it</source>
        <translation>読み込んだフレーム; 選ぶと表示</translation>
    </message>
    <message>
        <source>Exp.</source>
        <translation>露光</translation>
    </message>
    <message>
        <source>50</source>
        <translation>50</translation>
    </message>
    <message>
        <source>The exporsure eime is used when the time is not recorded in image file.</source>
        <translation>画像ファイルに露光時間が記録されていないときに使う露光時間</translation>
    </message>
    <message>
        <source>[ms]</source>
        <translation>[ms]</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>間引き</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>Load every n-th file; below 2 loads every file</source>
        <translation>n 個おきに読込; 2 未満は全ファイル</translation>
    </message>
    <message>
        <source>Cut F.</source>
        <translation>先頭除外</translation>
    </message>
    <message>
        <source>Files left out at the start of the selection</source>
        <translation>選択の先頭で除外するファイル数</translation>
    </message>
    <message>
        <source>Cut L.</source>
        <translation>末尾除外</translation>
    </message>
    <message>
        <source>Files left out at the end of the selection</source>
        <translation>選択の末尾で除外するファイル数</translation>
    </message>
    <message>
        <source>Energy</source>
        <translation>エネルギー</translation>
    </message>
    <message>
        <source>Setup</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>How each frame gets its energy</source>
        <translation>各フレームのエネルギーの決め方</translation>
    </message>
    <message>
        <source>Add. Setup</source>
        <translation>追加設定</translation>
    </message>
    <message>
        <source>Dark area, bad-pixel mask and loading options</source>
        <translation>ダーク領域、欠陥画素マスク、読み込みの設定</translation>
    </message>
</context>
<context>
    <name>SelectDataFilesAdditionalSetup</name>
    <message>
        <source>Select Data Files Additional Setup</source>
        <translation>データファイル選択の追加設定</translation>
    </message>
    <message>
        <source>Dark Area</source>
        <translation>ダーク領域</translation>
    </message>
    <message>
        <source>Set Dark Area</source>
        <translation>ダーク領域設定</translation>
    </message>
    <message>
        <source>Use the area selected on the image as dark area</source>
        <translation>画像で選んだ領域をダーク領域にする</translation>
    </message>
    <message>
        <source>Up Date</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>Compute the dark area of frames loaded since</source>
        <translation>以後に読み込むフレームのダーク領域を計算</translation>
    </message>
    <message>
        <source>CLR</source>
        <translation>消去</translation>
    </message>
    <message>
        <source>Stop using the dark area</source>
        <translation>ダーク領域の使用をやめる</translation>
    </message>
    <message>
        <source>(-,-)-(-,-)</source>
        <translation>(-,-)-(-,-)</translation>
    </message>
    <message>
        <source>The dark area: (x0,y0)-(x1,y1)</source>
        <translation>ダーク領域: (x0,y0)-(x1,y1)</translation>
    </message>
    <message>
        <source>Show Latest Image on Load</source>
        <translation>読込中に最新画像を表示</translation>
    </message>
    <message>
        <source>Follow the newest frame while files load</source>
        <translation>読み込み中は最新のフレームを表示</translation>
    </message>
    <message>
        <source>Ignore  &apos;Live&apos; file</source>
        <translation>&apos;Live&apos; ファイルを無視</translation>
    </message>
    <message>
        <source>Pass over files with &quot;Live&quot; in their name</source>
        <translation>名前に &quot;Live&quot; を含むファイルを飛ばす</translation>
    </message>
    <message>
        <source>Bad Pixels</source>
        <translation>欠陥画素</translation>
    </message>
    <message>
        <source>Select Err. Ps. Def.</source>
        <translation>欠陥画素定義を選択</translation>
    </message>
    <message>
        <source>Choose a bad-pixel mask file</source>
        <translation>欠陥画素マスクファイルを選択</translation>
    </message>
    <message>
        <source>Use Err Points Mask</source>
        <translation>欠陥画素マスク使用</translation>
    </message>
    <message>
        <source>Mend the pixels of the mask in every loaded frame</source>
        <translation>読み込んだ全フレームでマスクの画素を補修</translation>
    </message>
    <message>
        <source>The bad-pixel mask file</source>
        <translation>欠陥画素マスクファイル</translation>
    </message>
    <message>
        <source>HDF5 Stack</source>
        <translation>HDF5 スタック</translation>
    </message>
    <message>
        <source>Image Dataset</source>
        <translation>画像のデータセット</translation>
    </message>
    <message>
        <source>first 3-D dataset</source>
        <translation>最初の3次元データセット</translation>
    </message>
    <message>
        <source>Path of the frames&apos; dataset in an HDF5 file, e.g. /exchange/data; empty takes the first 3-D dataset</source>
        <translation>HDF5 ファイル内のフレームのデータセットのパス (例 /exchange/data); 空なら最初の3次元データセット</translation>
    </message>
    <message>
        <source>Energy Dataset</source>
        <translation>エネルギーのデータセット</translation>
    </message>
    <message>
        <source>first 1-D, one a frame</source>
        <translation>最初の1次元データセット</translation>
    </message>
    <message>
        <source>Path of the frames&apos; energies in the HDF5 file; empty takes the first 1-D dataset with one value a frame, and without one the energy setup gives them</source>
        <translation>HDF5 ファイル内のフレームのエネルギーのパス; 空ならフレームごとに一つの値を持つ最初の1次元データセット、なければエネルギー設定による</translation>
    </message>
</context>
<context>
    <name>Stars</name>
    <message>
        <source>Stars Settings</source>
        <translation>STARS 設定</translation>
    </message>
    <message>
        <source>Host</source>
        <translation>ホスト</translation>
    </message>
    <message>
        <source>localhost</source>
        <translation>localhost</translation>
    </message>
    <message>
        <source>Host of the STARS message server</source>
        <translation>STARS メッセージサーバーのホスト</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>ポート</translation>
    </message>
    <message>
        <source>6057</source>
        <translation>6057</translation>
    </message>
    <message>
        <source>Port of the STARS message server</source>
        <translation>STARS メッセージサーバーのポート</translation>
    </message>
    <message>
        <source>Name on Stares</source>
        <translation>STARS 上の名前</translation>
    </message>
    <message>
        <source>Ostrakine</source>
        <translation>Ostrakine</translation>
    </message>
    <message>
        <source>Name of this program on the server</source>
        <translation>サーバー上でのこのプログラムの名前</translation>
    </message>
    <message>
        <source>Key File Name</source>
        <translation>鍵ファイル名</translation>
    </message>
    <message>
        <source>Ostrakine.key</source>
        <translation>Ostrakine.key</translation>
    </message>
    <message>
        <source>Key file given by the server&apos;s administrator</source>
        <translation>サーバー管理者から渡された鍵ファイル</translation>
    </message>
    <message>
        <source>background-color: rgb(225, 192, 192);</source>
        <translation>background-color: rgb(225, 192, 192);</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状態</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>動作</translation>
    </message>
    <message>
        <source>Stars:</source>
        <translation>STARS:</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>未接続</translation>
    </message>
    <message>
        <source>State of the connection to the server</source>
        <translation>サーバーとの接続状態</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>接続</translation>
    </message>
    <message>
        <source>Connect to the server, or disconnect</source>
        <translation>サーバーに接続、または切断</translation>
    </message>
</context>
<context>
    <name>Stats</name>
    <message>
        <source>Statistics</source>
        <translation>統計</translation>
    </message>
    <message>
        <source>Histogram; drag a blue marker to choose a range</source>
        <translation>ヒストグラム; 青いマーカーをドラッグして範囲を選択</translation>
    </message>
    <message>
        <source>Bins</source>
        <translation>ビン数</translation>
    </message>
    <message>
        <source>100</source>
        <translation>100</translation>
    </message>
    <message>
        <source>Number of histogram bins</source>
        <translation>ヒストグラムのビン数</translation>
    </message>
    <message>
        <source>Num</source>
        <translation>点数</translation>
    </message>
    <message>
        <source>Points of the area</source>
        <translation>領域の点数</translation>
    </message>
    <message>
        <source>Mean</source>
        <translation>平均</translation>
    </message>
    <message>
        <source>Mean over the area</source>
        <translation>領域の平均</translation>
    </message>
    <message>
        <source>Sigma</source>
        <translation>σ</translation>
    </message>
    <message>
        <source>Standard deviation over the area</source>
        <translation>領域の標準偏差</translation>
    </message>
    <message>
        <source>In Selected Area:</source>
        <translation>選択範囲内:</translation>
    </message>
    <message>
        <source>Min</source>
        <translation>最小</translation>
    </message>
    <message>
        <source>Lower marker</source>
        <translation>下側マーカー</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>最大</translation>
    </message>
    <message>
        <source>Upper marker</source>
        <translation>上側マーカー</translation>
    </message>
    <message>
        <source>Mean between the markers</source>
        <translation>マーカー間の平均</translation>
    </message>
    <message>
        <source>Sigam</source>
        <translation>σ</translation>
    </message>
    <message>
        <source>Standard deviation between the markers</source>
        <translation>マーカー間の標準偏差</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Value under the mouse</source>
        <translation>ポインタ位置の値</translation>
    </message>
    <message>
        <source>Val/Max</source>
        <translation>度数/最大</translation>
    </message>
    <message>
        <source>Count of the bin under the mouse / largest count</source>
        <translation>ポインタ位置のビンの度数 / 最大度数</translation>
    </message>
    <message>
        <source>Show Over Image</source>
        <translation>画像上に表示</translation>
    </message>
    <message>
        <source>Outline the points between the markers on the main image</source>
        <translation>マーカー間の値をもつ点をメイン画像上に枠で示す</translation>
    </message>
    <message>
        <source>Show Stats in Selected Area</source>
        <translation>選択範囲の統計を表示</translation>
    </message>
    <message>
        <source>Draw the mean and sigma between the markers</source>
        <translation>マーカー間の平均と標準偏差を描く</translation>
    </message>
</context>
<context>
    <name>SumUpCtrl</name>
    <message>
        <source>Sum Up Control</source>
        <translation>積算設定</translation>
    </message>
    <message>
        <source>Sum Up Img No. From:</source>
        <translation>積算する画像番号  開始:</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>First image of the range</source>
        <translation>範囲の最初の画像</translation>
    </message>
    <message>
        <source>To:</source>
        <translation>終了:</translation>
    </message>
    <message>
        <source>1000</source>
        <translation>1000</translation>
    </message>
    <message>
        <source>Image after the last of the range (not included)</source>
        <translation>範囲の最後の次の画像 (含まない)</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>追加</translation>
    </message>
    <message>
        <source>Add the range to the sum</source>
        <translation>範囲を積算に追加</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Remove the chosen range from the list (it goes on counting in the sum)</source>
        <translation>選んだ範囲を一覧から削除 (積算には含まれたまま)</translation>
    </message>
    <message>
        <source>The ranges summed up</source>
        <translation>積算する範囲</translation>
    </message>
</context>
<context>
    <name>XafsFileSelect</name>
    <message>
        <source>Use this spectrum</source>
        <translation>このスペクトルを使う</translation>
    </message>
    <message>
        <source>background-color: rgb(253, 255, 225);</source>
        <translation>background-color: rgb(253, 255, 225);</translation>
    </message>
    <message>
        <source>The chosen spectrum file</source>
        <translation>選んだスペクトルファイル</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>選択</translation>
    </message>
    <message>
        <source>Choose a spectrum file</source>
        <translation>スペクトルファイルを選択</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>クリア</translation>
    </message>
    <message>
        <source>Forget the file name</source>
        <translation>ファイル名を消去</translation>
    </message>
    <message>
        <source>XAFS Data File (*.dat)</source>
        <translation>XAFS データファイル (*.dat)</translation>
    </message>
    <message>
        <source>Any Files (* *.*)</source>
        <translation>すべてのファイル (* *.*)</translation>
    </message>
</context>
<context>
    <name>XafsView</name>
    <message>
        <source>Spectrum</source>
        <translation>スペクトル</translation>
    </message>
    <message>
        <source>Wheel: zoom the energy axis around the pointer</source>
        <translation>ホイール: ポインタを中心にエネルギー軸を拡大縮小</translation>
    </message>
    <message>
        <source>Normalized</source>
        <translation>規格化</translation>
    </message>
    <message>
        <source>Show the spectra normalised between their pre-edge and post-edge lines</source>
        <translation>プレエッジ線とポストエッジ線で規格化したスペクトルを表示</translation>
    </message>
    <message>
        <source>E. Correct</source>
        <translation>E 補正</translation>
    </message>
    <message>
        <source>Plot the spectrum at the energies corrected by its energy shift</source>
        <translation>エネルギーシフトで補正したエネルギーでスペクトルを描く</translation>
    </message>
    <message>
        <source>Raw</source>
        <translation>生データ</translation>
    </message>
    <message>
        <source>Show the raw box sums instead of the spectrum</source>
        <translation>スペクトルの代わりに生のボックス和を表示</translation>
    </message>
    <message>
        <source>FFT</source>
        <translation>FFT</translation>
    </message>
    <message>
        <source>With Raw: show the Fourier magnitudes of the raw box sums</source>
        <translation>生データと共に: 生のボックス和のフーリエ振幅を表示</translation>
    </message>
    <message>
        <source>S.R.</source>
        <translation>範囲初期化</translation>
    </message>
    <message>
        <source>Reset X Axis Scale</source>
        <translation>X 軸スケールを戻す</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Save the shown spectra as data files and the window as a picture</source>
        <translation>表示中のスペクトルをデータファイルに、ウィンドウを画像に保存</translation>
    </message>
    <message>
        <source>To Network</source>
        <translation>ネットへ送信</translation>
    </message>
    <message>
        <source>Send the shown spectrum to the message server</source>
        <translation>表示中のスペクトルをメッセージサーバーへ送る</translation>
    </message>
    <message>
        <source>Pos.</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Energy under the pointer [eV]</source>
        <translation>ポインタ位置のエネルギー [eV]</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>Value under the pointer</source>
        <translation>ポインタ位置の値</translation>
    </message>
    <message>
        <source>Edge jump and edge position of the shown spectrum</source>
        <translation>表示スペクトルのエッジジャンプと吸収端位置</translation>
    </message>
    <message>
        <source>dMut = %1, Edge %2 [eV] : %3 %4</source>
        <translation>dMut = %1, 吸収端 %2 [eV] : %3 %4</translation>
    </message>
    <message>
        <source>Out of Range midx</source>
        <translation>midx が範囲外</translation>
    </message>
    <message>
        <source>Noizy to decide midx</source>
        <translation>ノイズのため midx を決められない</translation>
    </message>
    <message>
        <source>Data File (*.dat);;Any Files (* *.*)</source>
        <translation>データファイル (*.dat);;すべてのファイル (* *.*)</translation>
    </message>
</context>
<context>
    <name>_FileDialog</name>
    <message>
        <source>MQRS Files, IMG Files, Tiff Files (*.dat *.img *.tif *.tiff)</source>
        <translation>MQRS, IMG, TIFF ファイル (*.dat *.img *.tif *.tiff)</translation>
    </message>
    <message>
        <source>HDF5 Files (*.h5 *.hdf5 *.nxs)</source>
        <translation>HDF5 ファイル (*.h5 *.hdf5 *.nxs)</translation>
    </message>
    <message>
        <source>Any Files (* *.*)</source>
        <translation>すべてのファイル (* *.*)</translation>
    </message>
</context>
</TS>
