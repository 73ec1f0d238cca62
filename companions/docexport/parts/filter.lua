-- WordprocessingML that the exporter writes itself goes into the document as it stands. Pages of the course
-- can't bring in any: what is taken of them has no classes.
function CodeBlock(block)
  if block.classes:includes("wordxml") then
    return pandoc.RawBlock("openxml", block.text)
  end
end
